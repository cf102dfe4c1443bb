// Real documents, broken ones and generated ones on the whole way, unchanged and translated.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "platform/unicode.h"
#include "suite/rtf_filter_property.h"
#include "support/corpus.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

TEST(RtfFilterCorpus, RealDocumentsSurvive) {
  const std::vector<std::u16string> documents = corpus_files(u"rtf", {u"rtf"});
  if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  std::size_t right = 0;
  std::size_t texts = 0;
  for (const std::u16string& path : documents) {
    SCOPED_TRACE(to_utf8(path));
    std::size_t text_count = 0;
    const std::string broken = broken_rtf_property(read_whole(path), 1252, &text_count);
    EXPECT_EQ(broken, "");
    right += broken.empty() ? 1 : 0;
    texts += text_count;
  }
  EXPECT_GT(texts, 0u);
  std::printf("%zu of %zu documents, %zu texts\n", right, documents.size(), texts);
}

constexpr std::string_view kDocument =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 Times;}{\\f1\\fcharset128 "
    "Gothic;}}{\\colortbl;\\red1;}"
    "{\\info{\\title Title}}{\\header Head\\par}\\pard One {\\b bold\\'e9} \\u8364?{\\f1\\'95\\'5c\x95\x5C}\\par "
    "a{\\footnote note\\par} b {\\field{\\*\\fldinst HYPERLINK \"u\"}{\\fldrslt{\\ul link}}} {\\pict 0123\\bin3 "
    "}{}}{\\v\\xe{i}}"
    "c\\tab d\\line e\\par{\\shp{\\*\\shpinst{\\sp{\\sn n}{\\sv v}}{\\shptxt box\\par}}}f\\par}";

TEST(RtfFilterProperty, ADocumentThatEndsAnywhereSurvives) {
  ASSERT_EQ(broken_rtf_property(kDocument, 1252), "");
  for (std::size_t size = 0; size < kDocument.size(); size += kStepOfTries)
    ASSERT_EQ(broken_rtf_property(kDocument.substr(0, size), 1252), "") << size;
}

TEST(RtfFilterProperty, ADocumentWithAnyBitFlippedSurvives) {
  for (std::size_t i = 0; i < kDocument.size() * 8; i += kStepOfTries) {
    std::string document(kDocument);
    document[i / 8] = static_cast<char>(document[i / 8] ^ 1 << i % 8);
    ASSERT_EQ(broken_rtf_property(document, 1252), "") << document;
  }
}

// Documents of pieces that meet in every order.
TEST(RtfFilterProperty, GeneratedDocumentsSurvive) {
  using namespace std::string_view_literals;
  const std::string_view pieces[] = {"{",
                                     "{",
                                     "}",
                                     "}",
                                     "{\\b ",
                                     "\\b ",
                                     "\\b0 ",
                                     "\\plain ",
                                     "\\f1 ",
                                     "\\f2",
                                     "\\f0 ",
                                     "{\\f1 ",
                                     "\\par ",
                                     "\\pard",
                                     "\\cell ",
                                     "\\tab",
                                     "\\tab ",
                                     "\\line ",
                                     "{\\footnote ",
                                     "{\\header ",
                                     "{\\shptxt ",
                                     "{\\field",
                                     "{\\*\\fldinst HYPERLINK a}",
                                     "{\\*\\fldinst PAGE}",
                                     "{\\fldrslt ",
                                     "{\\pict ",
                                     "\\bin2 }{",
                                     "{\\*\\x ",
                                     "\\*",
                                     "{\\v\\mor OBJ 1 }",
                                     "{\\xe ",
                                     "\\:",
                                     "{\\fonttbl",
                                     "{\\colortbl;",
                                     "\\cs7",
                                     "\\uc2",
                                     "\\uc0 ",
                                     "\\deleted ",
                                     "\\u8364",
                                     "\\u8364 ?",
                                     "\\u-10179?\\u-8704?",
                                     "\\'e9",
                                     "\\'95",
                                     "\\'5c",
                                     "\x95",
                                     "\x95\x5C",
                                     "\xFF",
                                     "\\~",
                                     "\\-",
                                     "\\emdash ",
                                     "\\\\",
                                     "\\{",
                                     "a",
                                     "Name;",
                                     "word ",
                                     " ",
                                     "o",
                                     "7",
                                     "\t",
                                     "\0"sv,
                                     "\r\n",
                                     "\n"};
  std::mt19937 random(20261);
  for (int round = 0; round < tries(4000); ++round) {
    std::string document =
        "{\\rtf1\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset128 B;}{\\f2\\fcharset2 C;}}";
    for (unsigned i = random() % 40; i > 0; --i) document += pieces[random() % std::size(pieces)];
    const BlockSizeScope scope(1 + random() % 64);
    ASSERT_EQ(broken_rtf_property(document, 1252), "") << document;
    ASSERT_EQ(broken_rtf_property(document, 932), "") << document;
  }
}

}  // namespace
}  // namespace kavo::test
