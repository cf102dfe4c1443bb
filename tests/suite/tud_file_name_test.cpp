// File names of all kinds in the header of a bilingual document.
#include <gtest/gtest.h>

#include "platform/files.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class TudFileName : public SuiteTest {};

TEST_F(TudFileName, AnyNameComesBack) {
  const struct {
    const char* name;
    std::u16string base;  // of "BASE.txt"
    std::string written;
  } cases[] = {
      {"plain", u"page one", "page one"},
      {"letters beyond ASCII", u"\u00E9t\u00E9 \u65E5\u672C", "\xC3\xA9t\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC"},
      {"markup", u"a&b<c>\"d'", "a&amp;b&lt;c&gt;&quot;d'"},
      {"control characters", u"a\u0001b\u001Fc", "a%01b%1Fc"},
      {"line break and tab", u"a\nb\tc\rd", "a&#10;b&#9;c&#13;d"},
      {"a byte that is no UTF-8", u"caf\xDCE9", "caf%E9"},
      {"a code point that is no character", u"a\uFFFFb", "a%EF%BF%BFb"},
      {"percent", u"100% sure", "100% sure"},
      {"what looks escaped", u"a%41b%%20%", "a%2541b%%2520%"},
      {"an escape made of parts", u"%4%\u0001", "%4%%01"},
      {"backslash of the system", path_from_host("a\\b"), path_from_host("a\\b") == u"a\\b" ? "b" : "a%5Cb"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    put(c.base + u".txt", "One\n");
    const std::u16string tud = convert(c.base + u".txt");
    EXPECT_NE(files.get(tud).find("<file original=\"" + c.written + ".txt\""), std::string::npos) << files.get(tud);
    const BilingualDocument document(tud);
    EXPECT_EQ(document.target_name(), in_folder(c.base + u"_FR.txt"));
    const auto skeleton = document.locate_skeleton();
    ASSERT_TRUE(skeleton);
    EXPECT_EQ(skeleton->path, tud + u".skl");
    EXPECT_EQ(rebuild(tud), "One\n");
  }
}

// A document from elsewhere names no file outside its own folder.
TEST_F(TudFileName, AnEscapedPathIsNoWayOutOfTheFolder) {
  put(u"a.txt", "One\n");
  const std::u16string tud = convert(u"a.txt");
  std::string xml = files.get(tud);
  const auto replace = [&](const std::string& old, const std::string& with) {
    ASSERT_NE(xml.find(old), std::string::npos);
    xml.replace(xml.find(old), old.size(), with);
  };
  replace("href=\"a_txt_FR.tud.skl\"", "href=\"..%2Fother%2Fa_txt_FR.tud.skl\"");
  replace("original=\"a.txt\"", "original=\"..%2F..%2Fevil.txt\"");
  files.put(tud, xml);
  files.put(u"C:\\other\\a_txt_FR.tud.skl", "not this one");
  const BilingualDocument document(tud);
  EXPECT_EQ(document.locate_skeleton()->path, tud + u".skl");
  EXPECT_EQ(document.target_name(), in_folder(u"evil_FR.txt"));
}

}  // namespace
}  // namespace kavo::test
