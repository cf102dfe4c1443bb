// Bilingual documents in every state, for the schema check beside these tests (check_xliff.sh): written to the folder
// that KAVO_TUD_FOLDER names. What the check does not see, that source and target hold the same codes, is tested here.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "common/document_names.h"
#include "platform/files.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/conversion.h"
#include "suite/document/pseudo_translation.h"
#include "suite/document/xliff_package.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class XliffSamples : public testing::Test {
 protected:
  XliffSamples() {
    if (const char* name = std::getenv("KAVO_TUD_FOLDER")) folder_ = path_from_host(name);
  }

  std::u16string path(std::u16string_view name) const { return folder_ + u"\\" + std::u16string(name); }

  std::u16string sample(std::u16string_view name, std::string_view bytes, std::u16string_view target_language = u"FR",
                        std::u16string_view filter = u"K19TXT") {
    const std::u16string document = path(name);
    write_file(document, bytes);
    ConversionRequest request{document,
                              tud_name_of(document, target_language),
                              u"",
                              u"EN-US",
                              std::u16string(target_language),
                              65001,
                              0,
                              std::u16string(filter)};
    ProgressEvent progress;
    convert_document(request, progress);
    const BilingualDocument converted(request.tud);
    EXPECT_EQ(converted.size() == 0, bytes.empty()) << "a sample without a text shows nothing";
    for (std::size_t i = 0; i < converted.size(); ++i) EXPECT_TRUE(converted.segment(i).is_unchanged());
    return request.tud;
  }

  // Fills a sample with a test translation. Every text that is not locked must differ from its source, and all must
  // hold their codes.
  void translate(const std::u16string& tud) {
    ProgressEvent progress;
    pseudo_translate(tud, progress);
    const BilingualDocument translated(tud);
    for (std::size_t i = 0; i < translated.size(); ++i) {
      if (translated.segment(i).status != TranslationStatus::kLocked) {
        EXPECT_NE(translated.segment(i).target, translated.segment(i).source);
      }
      EXPECT_EQ(code_problem(translated.segment(i).source, translated.segment(i).target), "");
    }
  }

 private:
  TempFolder temporary_;
  std::u16string folder_ = temporary_.path();
};

constexpr std::string_view kText = "One <two> & \"three\"\n\ttab\tand  blanks\nbytes \xFF and \x01 \x0C\nlast ]]>\n";

TEST_F(XliffSamples, Untranslated) { sample(u"new.txt", kText); }
TEST_F(XliffSamples, Empty) { sample(u"empty.txt", ""); }
TEST_F(XliffSamples, NamesThatAreNotUris) { sample(u"a b & c%20\u00E9.txt", kText); }
TEST_F(XliffSamples, AnUnknownLanguage) { sample(u"odd.txt", kText, u"X Y"); }
TEST_F(XliffSamples, Script) {
  sample(u"page_asp.scr", "\r\n<!-- ASP2HTML 1 -->\r\n<% Response.Write \"Bread & <butter>\" & 'b' %>\r\n");
}

TEST_F(XliffSamples, WithTheSkeletonInside) {
  const BilingualDocument document(sample(u"packed.txt", kText)), other(sample(u"other.txt", kText));
  const BilingualDocument* const documents[] = {&document, &other};
  pack_documents(std::span(documents).first(1), path(u"packed_inside.tud"));
  pack_documents(documents, path(u"packed_both.tud"));
  EXPECT_TRUE(is_package(path(u"packed_both.tud")));
}

TEST_F(XliffSamples, WithNotesAndStatesOfAnEditor) {
  const std::u16string tud = sample(u"noted.txt", "One\nTwo\n");
  BilingualDocument document(tud);
  document.set_segment(0, "Un", TranslationStatus::kFuzzy, 50);
  document.set_details(
      0, {"needs-l10n", "fuzzy-match", false, {{"a <question>", " from=\"Zo\u00EB &amp; Co\""}, {"b", ""}}});
  document.set_details(1, {"final", "", true, {}});
  document.save();
  EXPECT_EQ(BilingualDocument(tud).segment(1).status, TranslationStatus::kApproved);
}

TEST_F(XliffSamples, WithAlternatives) {
  BilingualDocument document(sample(u"offered.txt", "One\nTwo\n"));
  document.set_segment(0, "Un", TranslationStatus::kFuzzy, 0);
  XliffDetails details{"needs-review-translation", "exact-match", false, {{"n", ""}}};
  details.alternatives = {
      {std::int16_t{80}, from_host_text(u"One <1>x</1><2/> <<"), from_host_text(u"<2/>U <1>x</1>"), "a & b"},
      {std::nullopt, "", "Uno", ""}};
  document.set_details(0, details);
  document.save();
  struct Reader final : TudEvents {
    void unit(const TudUnit& unit) override {
      if (unit.id == "1") alternatives = unit.alternatives;
    }
    std::vector<TudAlternative> alternatives;
  };
  Reader reader;
  read_tud(document.path(), reader);
  EXPECT_EQ(reader.alternatives, details.alternatives) << "what is written is read";
}

TEST_F(XliffSamples, InASet) {
  write_file(path(u"set.txt"), kText);
  ConversionRequest request{path(u"set.txt"), path(u"set.tud"), u"", u"EN-US", u"FR", 65001, 0, u"K19TXT", "m1",
                            path(u"set.txt")};
  ProgressEvent progress;
  convert_document(request, progress);
  EXPECT_EQ(BilingualDocument(request.tud).size(), 4u);
}

TEST_F(XliffSamples, Page) {
  const std::u16string tud = sample(u"page.htm",
                                    "<html lang=en><title>A page</title><p>One <b>bold</b> and <img alt='a picture' "
                                    "src=x><br>two &amp; &eacute; <a href='x.htm?a=1&amp;b=\"'>a link</a> <!-- "
                                    "ASP2HTML 1 --> end</p><pre>  a\n  b</pre></html>",
                                    u"FR", u"K19HTM");
  translate(tud);
}

TEST_F(XliffSamples, Manual) {
  sample(u"manual.mif",
         "<MIFFile 8.00>\n<TextFlow <Para <ParaLine <String `One '> <Font <FTag `Bold'> > <String `bold'> <Char Tab> "
         "<String `\\xe9 end'> > > >\n",
         u"FR", u"K19MIF");
}

TEST_F(XliffSamples, ResourceScript) {
  const std::u16string tud =
      sample(u"app.rc",
             "STRINGTABLE { IDS_\"A\" \"%d files & <more>\\n\" IDS_\xC3\xA9 \"C\" }\nD DIALOG 0,0,1,1\nCAPTION \"T\"\n"
             "{ LTEXT \"&Name\", IDC_A & 1,0,0,1,1 }\n1 VERSIONINFO { VALUE \"InternalName\", \"a\\0\" }\n",
             u"FR", u"K19GCP");
  translate(tud);
}

TEST_F(XliffSamples, Letter) {
  const std::string_view letter =
      "{\\rtf1\\ansi{\\fonttbl{\\f0 T;}{\\f1\\fcharset2 S;}}{\\info{\\title A letter}}\\pard One {\\b bold {\\i both}} "
      "and "
      "{\\ul u}{\\v h}{\\f1\\'b7}\\line {\\field{\\*\\fldinst HYPERLINK \"u\"}{\\fldrslt a link}} \\tab "
      "b{\\super\\chftn{\\footnote note\\par}}{\\deleted d}{\\pict 00}{\\*\\bkmkstart m}\\'81 {\\field{\\*\\fldinst "
      "PAGE}{\\fldrslt 1}} end\\par}";
  const std::u16string tud = sample(u"letter.rtf", letter, u"FR", u"K19RTF");
  translate(tud);
}

TEST_F(XliffSamples, EveryStatusAndMatch) {
  std::string text;
  for (int i = 0; i < 24; ++i) text += "Line " + std::to_string(i) + " \xFF\n";
  const std::u16string tud = sample(u"status.txt", text);
  BilingualDocument document(tud);
  const PseudoTranslation pseudo(65001);
  for (std::size_t i = 0; i < document.size(); ++i)
    document.set_segment(i, i % 4 == 3 ? document.segment(i).source : pseudo.of(document.segment(i).source),
                         static_cast<TranslationStatus>(i % 6), static_cast<std::int16_t>(i % 3 * 50));
  document.save();
  const BilingualDocument again(tud);
  ASSERT_EQ(again.size(), 24u);
  for (std::size_t i = 0; i < again.size(); ++i) {
    EXPECT_EQ(code_problem(again.segment(i).source, again.segment(i).target), "");
    EXPECT_EQ(again.segment(i).match, static_cast<std::int16_t>(i % 3 * 50));
    EXPECT_EQ(again.segment(i).target, document.segment(i).target);
  }
}

}  // namespace
}  // namespace kavo::test
