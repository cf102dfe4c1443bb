// What the translation of a resource script looks like, and what is reported about it.
#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "suite/rc_filter_fixture.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

class RcFilterTargetTest : public RcFilterTest {
 protected:
  // Prepares into another language than French.
  std::u16string convert_to(std::string_view script, std::u16string_view source, std::u16string_view target,
                            FilterOptions options = {}) {
    put(u"a.rc", script);
    ConversionRequest request;
    request.document = in_folder(u"a.rc");
    request.tud = tud_name_of(request.document, target);
    request.source_language = source;
    request.target_language = target;
    request.source_code_page = 1252;
    request.filter = u"K19GCP";
    request.options = std::move(options);
    request.tell = [this](const Message& message) { told_.push_back(message.text); };
    ProgressEvent progress;
    convert_document(request, progress);
    return request.tud;
  }
  // With one translation for each text.
  std::string built(const std::u16string& tud, const std::vector<std::u16string>& translations) {
    BilingualDocument document(tud);
    EXPECT_EQ(document.size(), translations.size());
    for (std::size_t i = 0; i < translations.size(); ++i)
      document.set_segment(i, from_host_text(translations[i]), TranslationStatus::kTranslated, 0);
    document.save();
    TargetRequest request;
    request.target = in_folder(u"b.rc");
    request.open_tag = in_folder(u"b.otf");
    request.skeleton = skeleton_name_of(tud);
    request.tell = [this](const Message& message) { told_.push_back(message.text); };
    document.save_open_tag(request.open_tag);
    ProgressEvent progress;
    create_target(request, progress);
    return get(u"b.rc");
  }
  std::vector<std::u16string> told_;
};

struct TargetCase {
  const char* name;
  std::string_view script;
  std::u16string_view target;
  std::vector<std::u16string> translations;
  std::string_view expected;
};

const TargetCase kTargets[] = {
    {"macros stay between the literals",
     "LANGUAGE 9,1\nSTRINGTABLE\n{\n1 \"a \" APP \" b\"\n2 APP\n  \"c\" \"d\" TEXT(1)\n3 L\"e\"APP\"\\0\"\n4 \"\" APP \"f\"\n}\n"sv,
     u"FR",
     {u"b <1/> a", u"d<2/> <1/>", u"<1/>e", u"g<1/>"},
     "LANGUAGE 12, 1\n#pragma code_page(1252)\nSTRINGTABLE\n{\n1 \"b \" APP \" a\"\n2 \"d\" TEXT(1) \" \" APP\n3 L\"\" "
     "APP "
     "L\"e\\0\"\n4 \"g\" APP \"\"\n}\n"sv},
    {"beside macros, a literal in numbers is wide",
     "LANGUAGE 9,1\nD DIALOG 0,0,1,1\nCAPTION\"a\"APP\n{\n}\n"sv,
     u"FR",
     {u"<1/> \u0430"},
     "LANGUAGE 12, 1\n#pragma code_page(1252)\nD DIALOG 0,0,1,1\nCAPTION L\"\" APP L\" \\x0430\"\n{\n}\n"sv},
    {"language by name",
     "LANGUAGE LANG_ENGLISH, SUBLANG_ENGLISH_US\nSTRINGTABLE BEGIN 1 \"one\" END\n"sv,
     u"FR",
     {u"un"},
     "LANGUAGE LANG_FRENCH, SUBLANG_FRENCH\n#pragma code_page(1252)\nSTRINGTABLE BEGIN 1 \"un\" END\n"sv},
    {"language whose region has no name",
     "LANGUAGE LANG_ENGLISH, SUBLANG_DEFAULT\nSTRINGTABLE BEGIN 1 \"one\" END\n"sv,
     u"RU",
     {u"1"},
     "LANGUAGE LANG_RUSSIAN, SUBLANG_DEFAULT\n#pragma code_page(1251)\nSTRINGTABLE BEGIN 1 \"1\" END\n"sv},
    {"language by number and its code page",
     "LANGUAGE 9, 1\r\n#pragma code_page(1252)\r\nMENU MENU { MENUITEM \"a\", 1 }"sv,
     u"RU",
     {u"\u0434\u0430"},
     "LANGUAGE 25, 1\r\n#pragma code_page(1251)\r\nMENU MENU { MENUITEM \"\xE4\xE0\", 1 }"sv},
    {"no language",
     "STRINGTABLE BEGIN 1 \"a\" END\r\nSTRINGTABLE BEGIN 2 \"b\" END\r\n"sv,
     u"DE",
     {u"c", u"d"},
     "LANGUAGE 7, 1\r\n#pragma code_page(1252)\r\nSTRINGTABLE BEGIN 1 \"c\" END\r\nSTRINGTABLE BEGIN 2 \"d\" END\r\n"sv},
    {"other languages keep their code page",
     "LANGUAGE 9,1\n#pragma code_page(1252)\nSTRINGTABLE BEGIN 1 \"a\" END\nLANGUAGE 7,1\nSTRINGTABLE BEGIN 1 \"\xE4\" "
     "END\nLANGUAGE 10,1\n#pragma code_page(1252)\n1 RCDATA { \"\xF1\" }\n"sv,
     u"RU",
     {u"\u0434"},
     "LANGUAGE 25, 1\n#pragma code_page(1251)\nSTRINGTABLE BEGIN 1 \"\xE4\" END\nLANGUAGE 7,1\n\n#pragma "
     "code_page(1252)\nSTRINGTABLE BEGIN 1 \"\xE4\" END\nLANGUAGE 10,1\n#pragma code_page(1252)\n1 RCDATA { \"\xF1\" }\n"sv},
    {"a header with its own language",
     "STRINGTABLE LANGUAGE 9, 1 { 1 \"a\" }\n"sv,
     u"FR",
     {u"b"},
     "#pragma code_page(1252)\nSTRINGTABLE LANGUAGE 12, 1 { 1 \"b\" }\n"sv},
    {"what the code page lacks",
     "LANGUAGE 9,1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"a\\n\" }\n"sv,
     u"FR",
     {u"\u0434\u00E9 <1/>\U0001F600"},
     "LANGUAGE 12, 1\n#pragma code_page(1252)\nSTRINGTABLE { 1 L\"\\x0434\\x00E9 \\n\\xD83D\\xDE00\" }\n"sv},
    {"a character whose second byte is a backslash",
     "LANGUAGE 9,1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"a\" }\n"sv,
     u"JA",
     {u"\u80FD\u3042"},
     "LANGUAGE 17, 1\n#pragma code_page(932)\nSTRINGTABLE { 1 L\"\\x80FD\\x3042\" }\n"sv},
    {"quotes, escapes and the zero at the end",
     "LANGUAGE 9,1\n#pragma code_page(1252)\n1 VERSIONINFO { BLOCK \"x\" { VALUE "
     "\"Comments\", \"a\\0\" } }\n"sv,
     u"FR",
     {u"\"C:\\\"\t"},
     "LANGUAGE 12, 1\n#pragma code_page(1252)\n1 VERSIONINFO { BLOCK \"x\" { VALUE \"Comments\", "
     "\"\"\"C:\\\\\"\"\\t\\0\" } }\n"sv},
    {"several literals become one",
     "LANGUAGE 9,1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"a \"\n \"b\" 2 \"c\" }\n"sv,
     u"FR",
     {u"x", u"y"},
     "LANGUAGE 12, 1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"x\" 2 \"y\" }\n"sv},
    {"unchanged texts and names go to the new code page",
     "LANGUAGE 9,1\n#pragma code_page(1252)\n// \xE9\xA9\nD DIALOG 0,0,1,1\nCLASS \"\xE9\"\nFONT 8, \"\xE9\"\n{ LTEXT "
     "\"\xE9\",1,0,0,1,1 }\n"sv,
     u"RU",
     {u"\u00E9"},
     "LANGUAGE 25, 1\n#pragma code_page(1251)\n// ?\xA9\nD DIALOG 0,0,1,1\nCLASS L\"\\x00E9\"\nFONT 8, L\"\\x00E9\"\n{ "
     "LTEXT "
     "L\"\\x00E9\",1,0,0,1,1 }\n"sv},
    {"UTF-8 by declaration stays",
     "#pragma code_page(65001)\nLANGUAGE 9,1\nSTRINGTABLE { 1 \"a\" }\n"sv,
     u"RU",
     {u"\u0434"},
     "#pragma code_page(65001)\nLANGUAGE 25, 1\nSTRINGTABLE { 1 \"\xD0\xB4\" }\n"sv},
    {"UTF-8 with a mark stays",
     "\xEF\xBB\xBFLANGUAGE 9,1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"a\" }\n"sv,
     u"RU",
     {u"\u0434"},
     "\xEF\xBB\xBFLANGUAGE 25, 1\n#pragma code_page(1251)\nSTRINGTABLE { 1 \"\xD0\xB4\" }\n"sv},
    {"UTF-16",
     "\xFF\xFE{\0S\0T\0R\0I\0N\0G\0T\0A\0B\0L\0E\0{\0\x31\0\"\0a\0\"\0}\0"sv,
     u"RU",
     {u"\u0434\""},
     "\xFF\xFE{\0L\0A\0N\0G\0U\0A\0G\0E\0 \0\x32\0\x35\0,\0 \0\x31\0\n\0S\0T\0R\0I\0N\0G\0T\0A\0B\0L\0E\0{\0\x31\0\"\0\x34\x04\"\0\"\0\"\0}\0"sv},
};

TEST_F(RcFilterTargetTest, TranslationsTakeTheirPlaces) {
  for (const TargetCase& c : kTargets) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(built(convert_to(c.script, u"EN-US", c.target), c.translations), c.expected);
  }
}

constexpr std::string_view kTwoLanguages =
    "LANGUAGE 9,1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"a\" }\nLANGUAGE 12,1\n#pragma code_page(1252)\n"
    "STRINGTABLE { 1 \"old\" }\n1 RCDATA { 1 }\n// end\n";

TEST_F(RcFilterTargetTest, TheTargetLanguageIsReplacedOnlyWhenAsked) {
  EXPECT_EQ(reason_of([&] { convert_to(kTwoLanguages, u"EN-US", u"FR"); }),
            u"the script already has resources in FR, from line 6 on. Nothing is changed; --overwrite replaces them");
  EXPECT_FALSE(has(u"a_rc_FR.tud"));
  EXPECT_EQ(built(convert_to(kTwoLanguages, u"EN-US", u"FR", {{"overwrite", "1"}}), {u"b"}),
            "LANGUAGE 12, 1\n#pragma code_page(1252)\nSTRINGTABLE { 1 \"b\" }\nLANGUAGE 12,1\n#pragma code_page(1252)\n"
            "\n\n// end\n");
}

TEST_F(RcFilterTargetTest, AScriptWithoutTheSourceLanguageIsRefused) {
  EXPECT_EQ(reason_of([&] { convert_to("\nLANGUAGE 7,1\nSTRINGTABLE { 1 \"a\" }\n", u"EN-US", u"FR"); }),
            u"the script has no texts in EN-US; from line 3 on it has texts in DE. Name that language as the source "
            u"language");
}

TEST_F(RcFilterTargetTest, TextsLeftAloneAreCounted) {
  convert_to(
      "A ACCELERATORS { \"a\", 1 }\nB ACCELERATORS { \"a\", 1 }\nC RCDATA { \"x\" }\nD \"OWN\" { 1 }\nE DLGINIT { 1 }\n"
      "1 MESSAGETABLE \"a.bin\"\nF MESSAGETABLE b.bin\nG TOOLBAR 16, 15 BEGIN BUTTON 1 SEPARATOR END\n"
      "3 TEXTINCLUDE { \"x\" }\n"
      "LANGUAGE 9,1\nSTRINGTABLE { 1 \"a\" }\nLANGUAGE 7,1\nSTRINGTABLE { 1 \"a\" 2 \"b\" }\n",
      u"EN-US", u"FR");
  EXPECT_EQ(told_,
            std::vector<std::u16string>{
                u"left as they are: 1 \"OWN\", 2 ACCELERATORS, 1 DLGINIT, 2 MESSAGETABLE, 1 RCDATA, 1 TEXTINCLUDE, "
                u"1 TOOLBAR, 2 texts in DE"});
}

TEST_F(RcFilterTargetTest, AccessKeysAndMarkersAreChecked) {
  constexpr std::string_view kScript =
      "D DIALOG 0,0,1,1\nCAPTION \"T\"\n{\nLTEXT \"&Name\",1,0,0,1,1\nPUSHBUTTON \"&Open\",2,0,0,1,1\n"
      "PUSHBUTTON \"&Close\",3,0,0,1,1\nLTEXT \"a && b\",4,0,0,1,1\n}\n"
      "STRINGTABLE { 1 \"%d of %s\" 2 \"%1 and %2\" 3 \"x\" }\n";
  const std::u16string tud = convert_to(kScript, u"EN-US", u"FR");
  built(tud, {u"T & T", u"&Nom", u"Ouvrir", u"&Ne", u"a && b", u"<2/> von <1/>", u"<2/> und <1/>", u"100 %s"});
  EXPECT_EQ(told_,
            (std::vector<std::u16string>{
                u"segment 3 (line 5, column 12): the access key (&) is missing",
                u"segment 4 (line 6, column 12): the access key N is already used by another control of the dialog, "
                u"segment 2 (line 4, column 7)",
                u"segment 6 (line 9, column 17): the markers are in another order than in the source, which "
                u"the program does not expect",
                u"segment 8 (line 9, column 44): the marker %s is not in the source"}));
  told_.clear();
  built(tud, {u"T", u"&N&om", u"&Ouvrir", u"&Fermer", u"x", u"<1/> %d <2/>", u"<1/>", u"x"});
  EXPECT_EQ(told_, (std::vector<std::u16string>{
                       u"segment 2 (line 4, column 7): the translation has several access keys (&), or none that is a "
                       u"letter; the source has one",
                       u"segment 6 (line 9, column 17): the marker %d is doubled",
                       u"segment 7 (line 9, column 30): the marker %2 is missing"}));
}

TEST_F(RcFilterTargetTest, MissingMacrosAreReportedAndTheirOrderIsFree) {
  const std::u16string tud = convert_to("STRINGTABLE { 1 \"%d a\" APP \"b \" YEAR 2 \"c\" APP }\n", u"EN-US", u"FR");
  built(tud, {u"<3/> x <1/> <2/>", u"y"});
  EXPECT_EQ(told_, std::vector<std::u16string>{u"segment 2 (line 1, column 40): the macro APP is missing"});
}

TEST_F(RcFilterTargetTest, DialogsTakeTheFontOfTheOptions) {
  const FilterOptions options = {
      {"rc.dialog-font", "MS UI Gothic"}, {"rc.dialog-font-size", "9"}, {"rc.dialog-charset", "128"}};
  const std::u16string tud = convert_to(
      "LANGUAGE 9,1\n#pragma code_page(1252)\nA DIALOGEX 0,0,1,1\nFONT 8, \"MS Shell Dlg\", 400, 0, 0x1\n{ LTEXT "
      "\"a\",1,0,0,1,1 }\nB DIALOG 0,0,1,1\nFONT 8, \"System\"\n{ }\n",
      u"EN-US", u"JA", options);
  EXPECT_EQ(
      built(tud, {u"b"}),
      "LANGUAGE 17, 1\n#pragma code_page(932)\nA DIALOGEX 0,0,1,1\nFONT 9, \"MS UI Gothic\", 400, 0, 128\n{ LTEXT "
      "\"b\",1,0,0,1,1 }\nB DIALOG 0,0,1,1\nFONT 9, \"MS UI Gothic\"\n{ }\n");
}

TEST_F(RcFilterTargetTest, NamesMayHoldAnything) {
  convert_to(
      "D\xC9 DIALOG 0,0,1,1\nCAPTION \"a\"\n{\nLTEXT \"b\", I\xC9\x04,0,0,1,1\n}\n"
      "D\x04 MENU { MENUITEM \"c\", 1 }\n",
      u"EN-US", u"FR");
  const std::string xml = get(u"a_rc_FR.tud");
  for (const char* known : {"<note>DIALOG D\xC3\x89</note>", "resname=\"I\xC3\x89\"", "<note>MENU D</note>"})
    EXPECT_NE(xml.find(known), std::string::npos) << known << xml;
  EXPECT_EQ(BilingualDocument(in_folder(u"a_rc_FR.tud")).size(), 3U);
}

TEST_F(RcFilterTargetTest, IdentifiersNameTheirTexts) {
  convert_to(
      "STRINGTABLE\n{\n IDS_A \"a\"\n IDS_LONG_NAME\n   \"b\"\n IDS_B+1, \"c\" APP\n IDS_M APP \"m\" APP\n IDS_N + 1 "
      "APP \"n\" IDS_O, \"o\"\n}\nIDD_X DIALOG 0,0,1,1\nCAPTION "
      "\"d\"\n{\n"
      "LTEXT APP \"e\", IDC_E,0,0,1,1\n}\nIDM_X MENU\n{\nPOPUP \"f\"\n{\nMENUITEM \"g\", ID_G\n}\n}\n"
      "1 VERSIONINFO { BLOCK \"StringFileInfo\" { VALUE \"Comments\", \"h\" VALUE \"InternalName\", \"i\" } }\n",
      u"EN-US", u"FR");
  const std::string xml = get(u"a_rc_FR.tud");
  std::vector<std::string> names;
  for (std::size_t at = xml.find("resname=\""); at != std::string::npos; at = xml.find("resname=\"", at + 1))
    names.push_back(xml.substr(at + 9, xml.find('"', at + 9) - at - 9));
  EXPECT_EQ(names, (std::vector<std::string>{"IDS_A", "IDS_LONG_NAME", "IDS_B+1", "IDS_M", "IDS_N + 1", "IDS_O",
                                             "IDD_X", "IDC_E", "IDM_X", "ID_G", "Comments", "InternalName"}));
  const BilingualDocument document(in_folder(u"a_rc_FR.tud"));
  EXPECT_EQ(document.segment(11).status, TranslationStatus::kLocked);
  EXPECT_EQ(document.segment(10).status, TranslationStatus::kUntranslated);
}

}  // namespace
}  // namespace kavo::test
