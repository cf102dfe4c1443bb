// Scripts that are cut or damaged come back as they are, and lose no text on the way through a translation.
#include <gtest/gtest.h>

#include <random>

#include "suite/rc_filter_property.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

constexpr std::string_view kScript =
    "#include \"a.h\"\r\nLANGUAGE 9, 1\r\n#ifdef A\r\nSTRINGTABLE\r\nBEGIN\r\n IDS_A \"One \"\"two\"\" %d\\n\"\r\n"
    " IDS_B, L\"\\x20AC\" \"x\" /* c */\r\nEND\r\n#else // d\r\nD DIALOGEX 0,0,1,1\r\nCAPTION \"T\\\\\"\r\nFONT 8, \"S\", 0, 0, "
    "1\r\n{\r\nLTEXT \"&a\",1,0,0,1,1\r\n}\r\n#endif\r\nM MENU {POPUP \"p\" {MENUITEM \"b\\tC\",2}}\r\n1 VERSIONINFO {BLOCK "
    "\"S\" {VALUE \"C\", \"x\\0\"}}\r\nR RCDATA {\"raw\", 1}\r\nLANGUAGE 7,1\r\nSTRINGTABLE {1 \"de\"}\r\n";

TEST(RcFilterDamage, CutAtEveryByte) {
  for (std::size_t size = 0; size <= kScript.size(); size += kStepOfTries)
    ASSERT_EQ(broken_rc_property(kScript.substr(0, size), 1252), "") << size;
}

TEST(RcFilterDamage, EveryBitFlipped) {
  for (std::size_t i = 0; i < kScript.size() * 8; i += kStepOfTries) {
    std::string script(kScript);
    script[i / 8] = static_cast<char>(script[i / 8] ^ 1 << i % 8);
    ASSERT_EQ(broken_rc_property(script, 1252), "") << i / 8 << " " << i % 8 << "\n" << script;
  }
}

}  // namespace
}  // namespace kavo::test
