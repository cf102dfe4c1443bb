// Conversion as a whole: what is on the disk after every kind of failure.
#include "suite/document/conversion.h"

#include <gtest/gtest.h>

#include "formats/xml/xml_text.h"
#include "suite/components/filter_catalogue.h"
#include "suite/document/pseudo_translation.h"
#include "suite/document/word_count.h"
#include "suite/filters/filter.h"
#include "suite/suite_fixture.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

class ConversionTest : public SuiteTest {};

// The bilingual document and its skeleton appear together or not at all, the ones of an earlier run stay together.
TEST_F(ConversionTest, FailingAnywhereLeavesBothFilesAsTheyWere) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  put(u"a.txt", "Old\n");
  const std::u16string tud = convert(u"a.txt");
  const std::u16string skeleton = skeleton_name_of(tud);
  const std::string old_tud = files.get(tud), old_skeleton = files.get(skeleton);
  put(u"a.txt", "New\n");
  convert(u"a.txt");
  const std::string new_tud = files.get(tud), new_skeleton = files.get(skeleton);
  ASSERT_NE(old_skeleton, new_skeleton);
  for (const bool lasting : {false, true}) {
    FaultyFiles::Fault fault;
    fault.lasting = lasting;
    const std::size_t faults = for_each_fault(
        faulty, fault,
        [&](std::size_t) {
          files.put(tud, old_tud);
          files.put(skeleton, old_skeleton);
          try {
            convert(u"a.txt");
          } catch (const failure&) {
          }
        },
        [&](std::size_t number) {
          SCOPED_TRACE(number);
          const bool is_old = files.get(tud) == old_tud && files.get(skeleton) == old_skeleton;
          const bool is_new = files.get(tud) == new_tud && files.get(skeleton) == new_skeleton;
          // A disk that fails for good between the two renames leaves the old skeleton in its copy.
          const bool is_between = lasting && files.get(tud) == old_tud && files.all_files().size() == 4;
          EXPECT_TRUE(is_old || is_new || is_between);
          for (const std::u16string& path : files.all_files())
            if (path.find(u".kavo-") != std::u16string::npos) files.remove_file(path);
        });
    EXPECT_GT(faults, 10u);
  }
}

TEST_F(ConversionTest, BuildingTheTargetThatFailsAnywhereKeepsTheOldTarget) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  put(u"a.txt", "One\nTwo\n");
  const std::u16string tud = convert(u"a.txt");
  BilingualDocument(tud).save_open_tag(in_folder(u"a.otf"));
  const std::size_t count = files.all_files().size() + 1;
  const std::size_t faults = for_each_fault(
      faulty, {},
      [&](std::size_t) {
        put(u"b.txt", "old");
        try {
          ProgressEvent progress;
          create_target({in_folder(u"b.txt"), in_folder(u"a.otf"), skeleton_name_of(tud), u"", u""}, progress);
        } catch (const failure&) {
        }
      },
      [&](std::size_t number) {
        EXPECT_TRUE(get(u"b.txt") == "old" || get(u"b.txt") == "One\nTwo\n") << number;
        EXPECT_EQ(files.all_files().size(), count) << number;
      });
  EXPECT_GT(faults, 8u);
}

TEST_F(ConversionTest, AMissingSegmentIsNotPassedOver) {
  put(u"a.txt", "One\nTwo\n");
  const std::u16string tud = convert(u"a.txt");
  std::string bytes = files.get(tud);
  const std::size_t begin = bytes.find("<trans-unit id=\"1\"");
  bytes.erase(begin, bytes.find("<trans-unit id=\"2\"") - begin);
  files.put(tud, bytes);
  EXPECT_NE(reason_of([&] { rebuild(tud); }).find(u"segment 1 (line 1, column 1) is missing"), std::u16string::npos);
}

TEST_F(ConversionTest, FiltersThatAreNotThereAreNamed) {
  put(u"a.txt", "One\n");
  EXPECT_NE(reason_of([&] { convert(u"a.txt", {.filter = u"K19XYZ"}); }).find(u"K19XYZ"), std::u16string::npos);
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(ConversionTest, CatalogueConvertsAndCreatesTargets) {
  put(u"a.txt", "One\n");
  FilterCatalogue catalogue;
  const auto text = [](std::u16string_view value) { return by_value(std::u16string(value)); };
  Argument arguments[] = {text(in_folder(u"a.txt")),
                          text(in_folder(u"a.tud")),
                          text(u""),
                          text(u"EN-US"),
                          by_value(0),
                          text(u"FR"),
                          by_value(0),
                          text(u"k19txt"),
                          text(u"paragraph")};
  EXPECT_EQ(as_number(catalogue.invoke(u"Convert", arguments)), 1);
  EXPECT_TRUE(has(u"a.tud.skl"));
  BilingualDocument(in_folder(u"a.tud")).save_open_tag(in_folder(u"a.otf"));
  Argument target[] = {text(in_folder(u"b.txt")), text(in_folder(u"a.otf")), text(in_folder(u"a.tud.skl")), text(u"FR"),
                       text(u"K19TXT")};
  catalogue.invoke(u"CreateTarget", target);
  EXPECT_EQ(get(u"b.txt"), "One\n");
  Argument name[] = {text(u"K19TXT")};
  EXPECT_EQ(as_number(catalogue.invoke(u"Settings", name)), 0);
  arguments[8] = text(u"Sentence");
  EXPECT_NE(reason_of([&] { catalogue.invoke(u"Convert", arguments); }), u"");
  target[1] = text(in_folder(u"missing.otf"));
  EXPECT_NE(reason_of([&] { catalogue.invoke(u"CreateTarget", target); }), u"");
}

TEST(TudNames, AreMadeOfStemExtensionAndLanguage) {
  EXPECT_EQ(tud_name_of(u"C:\\a\\page_asp.htm", u"FR"), u"C:\\a\\page_asp_htm_FR.tud");
  EXPECT_EQ(tud_name_of(u"KAVO_ix.mif", u"EN-US"), u"KAVO_ix_mif_EN-US.tud");
  EXPECT_EQ(skeleton_name_of(u"C:\\a\\x.tud"), u"C:\\a\\x.tud.skl");
}

TEST(XmlText, EscapesWhatAParserWouldChange) {
  std::string text, attribute;
  append_xml_text(text, "a<b>&\"\t\r\n");
  append_xml_attribute(attribute, "a<b>&\"\t\r\n");
  EXPECT_EQ(text, "a&lt;b&gt;&amp;\"\t&#13;\n");
  EXPECT_EQ(attribute, "a&lt;b&gt;&amp;&quot;&#9;&#13;&#10;");
}

TEST(XmlText, LanguageCodes) {
  EXPECT_EQ(bcp47_of("EN-US"), "en-US");
  EXPECT_EQ(bcp47_of("FR"), "fr");
  EXPECT_EQ(bcp47_of("ZH-HANS-CN"), "zh-Hans-CN");
  EXPECT_EQ(bcp47_of("ES-419"), "es-419");
  for (const char* none : {"", "-", "EN-", "EN--US", "ENGLISHUS", "E N", "\xC3\xA9", "1A"})
    EXPECT_EQ(bcp47_of(none), "und") << none;
}

TEST(PseudoTranslation, KeepsCodesAndWhatTheCodePageLacks) {
  const std::string coded = from_host_text(u"<1>Open</1> c<2/>");
  EXPECT_EQ(to_host_text(PseudoTranslation(65001).of(coded)), u"<1>[\u00D5p\u00E8\u00F1</1> \u00E7]<2/>");
  EXPECT_EQ(to_host_text(PseudoTranslation(932).of(coded)), u"<1>[Open</1> c]<2/>");
}

TEST(PseudoTranslation, LeavesTheEdgesOfATextAsTheyAre) {
  struct Case {
    const char* name;
    const char16_t* source;
    const char16_t* expected;
  };
  constexpr Case kCases[] = {
      {"words alone", u"b d", u"[b d]"},
      {"codes at both edges", u"<1><2>b</2></1> <3>d</3>", u"<1><2>[b</2></1> <3>d]</3>"},
      {"blank beside a code", u"<1/> b\u00A0<2/>", u"<1/> [b]\u00A0<2/>"},
      {"blanks at the edges", u"\t b \u00A0", u"\t [b] \u00A0"},
      {"blanks between codes", u" <1/> <2/> b <3/> ", u" <1/> <2/> [b] <3/> "},
      {"blank between words", u"b<1/> <2/>d", u"[b<1/> <2/>d]"},
      {"no words", u" <1/> ", u" <1/> "},
      {"nothing", u"", u""},
  };
  const PseudoTranslation pseudo(65001);
  for (const Case& c : kCases) EXPECT_EQ(to_host_text(pseudo.of(from_host_text(c.source))), c.expected) << c.name;
}

TEST(PseudoTranslation, AScriptStaysAScript) {
  const PseudoTranslation pseudo(65001, true);
  const auto of = [&](const char16_t* text) { return to_host_text(pseudo.of(from_host_text(text))); };
  EXPECT_EQ(of(u"<1/>\"Open\"<2/>'no'<3/>"), u"<1/>\"[\u00D5p\u00E8\u00F1]\"<2/>'[\u00F1\u00F4]'<3/>");
  EXPECT_EQ(of(u"\"a \"\"b\"\" c\""), u"\"[\u00E1 \"\"b\"\" \u00E7]\"");
  EXPECT_EQ(of(u"\"\""), u"\"[]\"");
  EXPECT_EQ(of(u"\""), u"\"");
}

TEST_F(ConversionTest, PseudoTranslationFillsADocumentAndLeavesLockedTextsAlone) {
  put(u"page_asp.SCR", "\r\n<!-- ASP2HTML 1 -->\r\n<% MsgBox \"Hello you\" : MsgBox \"Not you\" %>\r\n");
  const std::u16string tud = convert(u"page_asp.SCR");
  BilingualDocument document(tud);
  ASSERT_EQ(document.size(), 2u);
  document.set_segment(1, document.segment(1).source, TranslationStatus::kLocked, 100);
  document.save();
  ProgressEvent progress;
  EXPECT_EQ(pseudo_translate(tud, progress), 1u);
  const BilingualDocument filled(tud);
  EXPECT_EQ(to_host_text(filled.segment(0).target), u"[H\u00E8ll\u00F4 \u00FF\u00F4\u00FC]");
  EXPECT_EQ(filled.segment(0).status, TranslationStatus::kTranslated);
  EXPECT_TRUE(filled.segment(1).is_unchanged());
  EXPECT_EQ(filled.segment(1).match, 100);
  EXPECT_EQ(rebuild(tud),
            "\r\n<!-- ASP2HTML 1 -->\r\n<% MsgBox \"[H\xC3\xA8ll\xC3\xB4 \xC3\xBF\xC3\xB4\xC3\xBC]\" : MsgBox \"Not "
            "you\" %>\r\n");
}

TEST(WordCount, CountsAsTranslatorsDo) {
  EXPECT_EQ(word_count(""), 0u);
  EXPECT_EQ(word_count("One two, three - 4."), 4u);
  EXPECT_EQ(word_count("don't re-use"), 2u);
  EXPECT_EQ(word_count("caf\xC3\xA9\xC2\xA0noir"), 2u);
  EXPECT_EQ(word_count("\xE6\x97\xA5\xE6\x9C\xAC go"), 3u);
  EXPECT_EQ(word_count("-- \xE2\x80\x93 ..."), 0u);
}

}  // namespace
}  // namespace kavo::test
