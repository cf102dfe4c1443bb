#include "suite/filters/rc/rc_filter.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "suite/rc_filter_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

struct Case {
  const char* name;
  std::string_view script;
  std::vector<std::u16string> texts;
};

const Case kScripts[] = {
    {"empty", ""sv, {}},
    {"string table", "STRINGTABLE\nBEGIN\n IDS_A \"One\"\n IDS_B, \"Two\"\nEND\n"sv, {u"One", u"Two"}},
    {"braces", "STRINGTABLE {\n1 \"One\" 2 \"Two\"}\n"sv, {u"One", u"Two"}},
    {"several literals are one text",
     "STRINGTABLE\nBEGIN\n 1 \"One \"\n   \"two\" /* x */ \" three\"\nEND\n"sv,
     {u"One two three"}},
    {"a macro between literals is a code",
     "STRINGTABLE\nBEGIN\n IDS_A \"a \" APP \" b\"\n IDS_B APP \" c\" // APP\n IDS_C, APP \" d \"\n   APP\n   \"e\"\n"
     " IDS_F \"f \" APP VERSION_TEXT(MAJOR, (1)) \"g\"\nEND\n"sv,
     {u"a <1/> b", u"<1/> c", u"<1/> d ", u"e", u"f <1/><2/>g"}},
    {"a name at the start of a line or before a comma is the next string's",
     "STRINGTABLE\nBEGIN\n IDS_A \"a\"\n IDS_B\n \"b\" IDS_C, \"c\" \\\n APP /* x */ \"d\"\n IDS_E + 1 \"e\"\nEND\n"sv,
     {u"a", u"b", u"c<1/>d", u"e"}},
    {"macros alone and beside signs are no text",
     "STRINGTABLE\nBEGIN\n 1 APP\n 2 \"\" APP\n 3 \"1.\" VERSION \" (\xA9)\"\nEND\n1 VERSIONINFO { VALUE \"Comments\", "
     "VERSION \"\\0\" }\n"sv,
     {}},
    {"a text behind a control character is one beside a macro, too",
     "STRINGTABLE\nBEGIN\n 1 \"\x04 sign\" APP\nEND\n"sv,
     {u"<1/> sign<2/>"}},
    {"macros in captions, controls and menus",
     "D DIALOG 0,0,1,1\nCAPTION \"About \" APP\nFONT 8, \"System\"\nBEGIN\n LTEXT APP\n \" in \" LAND, 1,0,0,1,1\n"
     " CTEXT \"x\" IDC_X 0 0 1 1\nEND\nM MENU\nBEGIN\nPOPUP \"About \" APP\nBEGIN\nMENUITEM \"Quit \" APP, 2\nMENUITEM "
     "\"y\" "
     "ID_Y\nEND\nPOPUP \"z\" GRAYED\nBEGIN\nEND\nEND\n"sv,
     {u"About <1/>", u"<1/> in <2/>", u"x", u"About <1/>", u"Quit <1/>", u"y", u"z"}},
    {"macros in version values",
     "1 VERSIONINFO\nBEGIN\nBLOCK \"StringFileInfo\"\nBEGIN\nVALUE \"Comments\", \"The \" APP \" thing\\0\"\nVALUE "
     "\"ProductName\", APP \" a\" YEAR, \"b\", 5, _T(\"c\")\nEND\nEND\n"sv,
     {u"The <1/> thing", u"<1/> a<2/>", u"b", u"c"}},
    {"a branch ends a text",
     "STRINGTABLE\nBEGIN\n1 \"a\" APP\n#ifdef X\n APP \"b\"\n#endif\nEND\n"sv,
     {u"a<1/>", u"b"}},
    {"joined line", "STRINGTABLE\nBEGIN\n 1 \"One \\\ntwo\"\nEND\n"sv, {u"One two"}},
    {"line end inside", "STRINGTABLE\nBEGIN\n 1 \"One\n   two\"\nEND\n"sv, {u"One<1/>two"}},
    {"quotes", "STRINGTABLE BEGIN 1 \"say \"\"x\"\" \\\"y\\\" z\" END\n"sv, {u"say \"x\" \"y\" z"}},
    {"path that ends in a backslash", "STRINGTABLE\nBEGIN\n1 \"C:\\\"\n2 \"x\"\nEND\n"sv, {u"C:\\", u"x"}},
    {"escapes", "STRINGTABLE BEGIN 1 \"a\\nb\\tc\\\\d\\r\\ne\\x41\\101\" END\n"sv, {u"a<1/>b<2/>c\\d<3/>eAA"}},
    {"numbers are bytes of the code page",
     "STRINGTABLE BEGIN 1 \"caf\\xe9\" 2 L\"\\x20AC\" END\n"sv,
     {u"caf\u00E9", u"\u20AC"}},
    {"what compilers disagree on stays", "STRINGTABLE BEGIN 1 \"a\\qb\\0c\" END\n"sv, {u"a<1/>b<2/>c"}},
    {"a tab that stands as it is", "STRINGTABLE BEGIN 1 \"a\tb\" END\n"sv, {u"a<1/>b"}},
    {"zero at the end is no text", "STRINGTABLE BEGIN 1 \"One\\0\" END\n"sv, {u"One"}},
    {"printf markers",
     "STRINGTABLE BEGIN 1 \"%d of %-5.2lu, %1!s! 50% off 50%discount\" END\n"sv,
     {u"<1/> of <2/>, <3/> 50% off 50%discount"}},
    {"blank texts are none", "STRINGTABLE BEGIN 1 \"\" 2 \"  \" 3 \"\\n\" END\n"sv, {}},
    {"dialog",
     "IDD_A DIALOG 0, 0, 10, 10\nSTYLE WS_POPUP\nCAPTION \"About\"\nMENU IDM_A\nCLASS \"Mine\"\nFONT 8, \"System\"\n"
     "BEGIN\n ICON \"pic\",-1,0,0\n LTEXT \"&Name:\",IDC_A,0,0,1,1\n EDITTEXT IDC_B,0,0,1,1\n"
     " CONTROL \"Go\",IDC_C,\"Button\",BS_X,0,0,1,1\n CONTROL \"pic\",IDC_D,\"Static\",SS_BITMAP,0,0,1,1\n"
     " CONTROL 7,IDC_E,STATIC,SS_X,0,0,1,1\nEND\n"sv,
     {u"About", u"&Name:", u"Go"}},
    {"extended dialog with data of a control",
     "IDD_A DIALOGEX 0,0,1,1,5\nCAPTION L\"A\"\nBEGIN\nCONTROL \"B\",1,\"X\",0,0,0,1,1\nBEGIN\n \"data\\0\"\nEND\n"
     "PUSHBUTTON \"C\",IDOK,0,0,1,1\nEND\n"sv,
     {u"A", u"B", u"C"}},
    {"menu",
     "IDM MENU DISCARDABLE\nBEGIN\nPOPUP \"&File\"\nBEGIN\nMENUITEM \"&New\\tCtrl+N\",ID_NEW\nMENUITEM SEPARATOR\nEND\n"
     "MENUITEM \"?\", ID_HELP, GRAYED\nEND\n"sv,
     {u"&File", u"&New<1/>Ctrl+N", u"?"}},
    {"extended menu", "IDM MENUEX BEGIN POPUP \"A\",5,MFT_STRING,0,7 BEGIN MENUITEM \"B\",6 END END"sv, {u"A", u"B"}},
    {"version",
     "1 VERSIONINFO\nFILEVERSION 1,0\n#ifdef X\nFILEFLAGS 1\n#else\nFILEFLAGS 0\n#endif\nBEGIN\nBLOCK "
     "\"StringFileInfo\"\nBEGIN\nBLOCK \"040904b0\"\nBEGIN\nVALUE \"Comments\", \"Hello\\0\"\nVALUE \"FileVersion\", "
     "\"1.0\"\nVALUE \"LegalCopyright\" \"(C)\"\nEND\nEND\nBLOCK \"VarFileInfo\"\nBEGIN\nVALUE \"Translation\", "
     "0x409, 1200\nEND\nEND\n"sv,
     {u"Hello", u"1.0", u"(C)"}},
    {"what is no text",
     "1 ICON \"a.ico\"\n2 ICON a.ico\nA ACCELERATORS BEGIN \"C\", 1, VIRTKEY END\nB RCDATA BEGIN \"x\", 1 END\n"
     "C DLGINIT BEGIN 1, \"x\" END\n3 TEXTINCLUDE BEGIN \"#include \"\"x\"\"\" END\nD \"MYTYPE\" BEGIN \"y\" END\n"
     "1 24 \"app.manifest\"\nE TOOLBAR 1,1 BEGIN BUTTON 1 END\nSTRINGTABLE BEGIN 1 \"z\" END"sv,
     {u"z"}},
    {"comments", "STRINGTABLE // \"no\"\nBEGIN /* \"no\nBEGIN */ 1 \"a\" // 2 \"no\" \\\n3 \"no\"\nEND\n"sv, {u"a"}},
    {"preprocessor lines are no text",
     "#define X \"no\" /* \"no\n\" */ \"no\"\nSTRINGTABLE BEGIN 1 \"a\" END\n"sv,
     {u"a"}},
    {"a block that each branch opens",
     "STRINGTABLE\n#ifdef A\nBEGIN\n1 \"a\"\n#else\nBEGIN\n1 \"b\"\n#endif\n2 \"c\"\nEND\nX RCDATA BEGIN \"d\" END\n"sv,
     {u"a", u"b", u"c"}},
    {"a resource that each branch begins",
     "#ifdef A\nD DIALOG 0,0,1,1\n#else\nD DIALOG 0,0,2,2\n#endif\nCAPTION \"a\"\nBEGIN\nLTEXT \"b\",1,0,0,1,1\nEND\n"sv,
     {u"a", u"b"}},
    {"texts in each branch", "STRINGTABLE\nBEGIN\n1\n#ifdef A\n\"a\"\n#else\n\"b\"\n#endif\nEND\n"sv, {u"a", u"b"}},
    {"only the source language",
     "LANGUAGE LANG_GERMAN, SUBLANG_GERMAN\nSTRINGTABLE BEGIN 1 \"eins\" END\nLANGUAGE 9, 1\nSTRINGTABLE BEGIN 1 "
     "\"one\" "
     "END\nLANGUAGE LANG_NEUTRAL, SUBLANG_NEUTRAL\nSTRINGTABLE BEGIN 1 \"x\" END\n"sv,
     {u"one"}},
    {"another region when there is none of its own", "LANGUAGE 9, 2\nSTRINGTABLE BEGIN 1 \"one\" END\n"sv, {u"one"}},
    {"neutral language when there is no other", "LANGUAGE 0, 0\nSTRINGTABLE BEGIN 1 \"one\" END\n"sv, {u"one"}},
    {"a resource with a language of its own",
     "LANGUAGE 7, 1\nSTRINGTABLE LANGUAGE 9, 1 BEGIN 1 \"one\" END\nSTRINGTABLE BEGIN 1 \"eins\" END\n"
     "D DIALOG 0,0,1,1 CAPTION \"two\" LANGUAGE 0x9, 0x01 BEGIN END\n"sv,
     {u"one", u"two"}},
    {"UTF-8 with a mark", "\xEF\xBB\xBFSTRINGTABLE BEGIN 1 \"caf\xC3\xA9\" END\n"sv, {u"caf\u00E9"}},
    {"UTF-16", "\xFF\xFES\0T\0R\0I\0N\0G\0T\0A\0B\0L\0E\0{\0\r\0\n\0\x31\0\"\0\xAC\x20\"\0}\0"sv, {u"\u20AC"}},
    {"a declared code page", "#pragma code_page(1251)\nSTRINGTABLE BEGIN 1 \"\xC4\xE0\" END\n"sv, {u"\u0414\u0430"}},
    {"a backslash in a character of two bytes",
     "#pragma code_page(932)\nSTRINGTABLE BEGIN 1 \"\x94\x5C\" END // \x94\x5C\nX MENU BEGIN MENUITEM \"a\", 1 END\n"sv,
     {u"\u80FD", u"a"}},
    {"never closed", "STRINGTABLE BEGIN 1 \"a"sv, {}},
};

class RcFilterTextTest : public RcFilterTest {};

TEST_F(RcFilterTextTest, FindsTextsAndComesBackUnchangedAtEverySplit) {
  for (const Case& c : kScripts) {
    SCOPED_TRACE(c.name);
    const auto found = same_for_every_block_size(c.script.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      put(u"a.rc", c.script);
      Road way = road();
      const std::u16string tud = convert(u"a.rc", way);
      return sources(tud);
    });
    EXPECT_EQ(found, c.texts);
  }
}

TEST_F(RcFilterTest, ASegmentNamesItsStatement) {
  put(u"a.rc",
      "STRINGTABLE BEGIN 1 \"a\" END\n1 DIALOGEX 0, 0, 1, 1\nCAPTION \"b\"\nBEGIN\n PUSHBUTTON \"c\", 2, 0, 0, 1, "
      "1\nEND\n1 MENU BEGIN POPUP \"d\" BEGIN MENUITEM \"e\", 3 END END\n");
  const std::string tud = files.get(convert(u"a.rc", road()));
  for (const char* element : {"STRINGTABLE", "DIALOGEX/CAPTION", "DIALOGEX/PUSHBUTTON", "MENU/POPUP", "MENU/MENUITEM"})
    EXPECT_NE(tud.find("\"element\">" + std::string(element) + "</context>"), std::string::npos) << element << tud;
}

}  // namespace
}  // namespace kavo::test
