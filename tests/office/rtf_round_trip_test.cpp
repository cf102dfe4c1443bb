// Properties of both operations over generated documents, and over real ones where there are any.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "office/rtf_fixture.h"
#include "office/rtf_model.h"
#include "support/corpus.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// Documents made of the pieces that matter, in any order: mostly broken RTF.
std::string random_document(std::mt19937& random) {
  static constexpr std::string_view pieces[] = {"{\\pict",
                                                "{\\object",
                                                "{",
                                                "}",
                                                "\\",
                                                "\\\\",
                                                "\\bin",
                                                "\\bin3 ",
                                                "\\bin12 ",
                                                "\\bin0",
                                                "{\\v\\mor OBJ",
                                                " 1 }",
                                                "\r\n",
                                                "\n",
                                                "\r",
                                                "{\\result ",
                                                "0123",
                                                "text ",
                                                "{\\v\\mor OBJ 2 }",
                                                "\\{",
                                                "\\}",
                                                "\\'5c",
                                                "{\\pic",
                                                "{\\obj",
                                                "\x81\x7D",
                                                "7",
                                                " ",
                                                "{\\v\\mor OB",
                                                "{\\rtf1"};
  static constexpr std::string_view beginnings[] = {"\xEF\xBB\xBF", "\r\n ", "\xEF\xBB\xBF\t{\\rtf1 ", ""};
  std::string document(random() % 4 == 0 ? beginnings[random() % std::size(beginnings)] : "{\\rtf1 ");
  const std::size_t count = random() % 40;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view piece = pieces[random() % std::size(pieces)];
    // A whole marker mostly ends the case, so it is rare.
    if (piece == "{\\v\\mor OBJ 2 }" && random() % 8 != 0) continue;
    document += piece;
  }
  return document;
}

class RtfRoundTripTest : public RtfFixture {};

TEST_F(RtfRoundTripTest, GeneratedDocumentsAsTheSlowModelSays) {
  std::mt19937 random(4711);
  int moved = 0;
  int refused = 0;
  for (int i = 0; i < 6000; ++i) {
    const std::string document = random_document(random);
    SCOPED_TRACE(document);
    BlockSizeScope scope(1 + random() % 50);
    const auto model = model_extract(document);
    const auto got = extract(document);
    if (!model) {
      ++refused;
      ASSERT_EQ(got, (RtfOutcome{1, document, std::string(kNoObjects), 2}));
      continue;
    }
    moved += model->count != 0;
    ASSERT_EQ(got, (RtfOutcome{0, model->rtf, model->objects, 2}));
    ASSERT_EQ(got.rtf.find("{\\pict"), std::string::npos);
    ASSERT_EQ(got.rtf.find("{\\object"), std::string::npos);
    ASSERT_EQ(insert(), (RtfOutcome{0, document, model->objects, 2}));
  }
  EXPECT_GT(moved, 1000);
  EXPECT_GT(refused, 100);
}

TEST_F(RtfRoundTripTest, GeneratedSideFilesAsTheSlowModelSays) {
  static constexpr std::string_view pieces[] = {"{\\v\\mor OBJ 1 }",
                                                "{\\v\\mor OBJ 2 }",
                                                "\r\n{\\v\\mor OBJ 1 }\r\n",
                                                "\r\n{\\v\\mor OBJ 2 }\r\n",
                                                "{\\v\\mor OBJ ",
                                                "{\\pict 0}",
                                                "\r\n",
                                                "\n",
                                                "\r",
                                                "x"};
  std::mt19937 random(1234);
  const auto pick = [&](std::size_t most) {
    std::string text;
    const std::size_t count = random() % most;
    for (std::size_t i = 0; i < count; ++i) text += pieces[random() % std::size(pieces)];
    return text;
  };
  int replaced = 0;
  for (int i = 0; i < 6000; ++i) {
    const std::string objects = pick(25);
    const std::string document = "{\\rtf1 " + pick(10);
    SCOPED_TRACE(document + "\n--\n" + objects);
    BlockSizeScope scope(1 + random() % 50);
    const auto model = model_insert(document, objects);
    replaced += model.rtf != document;
    ASSERT_EQ(insert(document, objects), (RtfOutcome{model.result, model.rtf, objects, 2}));
  }
  EXPECT_GT(replaced, 100);
}

TEST_F(RtfRoundTripTest, LargeDocumentWithStartsAtEveryBlockBoundary) {
  // 256 KB blocks from 25 MB on; a start lies across each boundary, at a different byte of it each time.
  std::string document = "{\\rtf1 ";
  std::size_t shift = 0;
  for (std::size_t boundary = 256 * 1024; boundary <= 26'000'000; boundary += 256 * 1024, ++shift) {
    const std::string_view group = shift % 2 == 0 ? "{\\pict\\bin4 }{}{" : "{\\object{\\*\\objdata ";
    document.resize(boundary - shift % 9, 'x');
    document += group;
    document.resize(document.size() + 1000, '0');
    document += shift % 2 == 0 ? "}" : "}}";
  }
  document += "}";
  const auto got = extract(document);
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.rtf.find("{\\pict"), std::string::npos);
  EXPECT_EQ(got.rtf.find("{\\object"), std::string::npos);
  EXPECT_NE(got.objects.find("{\\v\\mor OBJ " + std::to_string(shift + 1) + " }\r\n"), std::string::npos);
  EXPECT_TRUE(insert().rtf == document);
}

TEST_F(RtfRoundTripTest, RealDocumentsComeBackByteForByte) {
  const auto documents = corpus_files(u"rtf", {u"rtf"});
  if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  std::size_t moved = 0;
  for (const std::u16string& path : documents) {
    const std::string document = read_file(path);
    SCOPED_TRACE(testing::PrintToString(path));
    const auto got = extract(document);
    const auto model = model_extract(document);
    ASSERT_TRUE(model);
    ASSERT_EQ(got.result, 0);
    EXPECT_TRUE(got.rtf == model->rtf);
    EXPECT_TRUE(got.objects == model->objects);
    EXPECT_EQ(got.rtf.find("{\\pict"), std::string::npos);
    EXPECT_EQ(got.rtf.find("{\\object"), std::string::npos);
    EXPECT_TRUE(insert().rtf == document);
    moved += model->count;
  }
  EXPECT_GT(moved, 0u);
}

TEST(RtfOnTheSystemsFiles, ComesBackByteForByte) {
  const TempFolder folder;
  const std::string document = "{\\rtf1 a{\\pict\\bin3 }\x81}b}" + std::string(100'000, 'x') + "{\\object c}";
  clsRTFUtil util;
  util.RTFFile(folder.write(u"na\u00EFve \u65E5\u672C.rtf", document));
  ASSERT_EQ(util.ExtractObjects(), 0);
  EXPECT_EQ(util.object_count(), 2u);
  EXPECT_EQ(folder.entry_count(), 2u);
  EXPECT_EQ(folder.read(u"na\u00EFve \u65E5\u672C.obj"),
            "{\\v\\mor OBJ 1 }\r\n{\\pict\\bin3 }\x81}b}\r\n{\\v\\mor OBJ 2 }\r\n{\\object c}\r\n"
            "{\\v\\mor OBJ 3 }\r\n");
  ASSERT_EQ(util.InsertObjects(), 0);
  EXPECT_EQ(folder.read(u"na\u00EFve \u65E5\u672C.rtf"), document);
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(RtfRoundTripTest, RealDocumentsComeBackFromEveryBlockSize) {
  const auto documents = corpus_files(u"rtf", {u"rtf"});
  if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  std::size_t small_documents = 0;
  for (const std::u16string& path : documents) {
    const std::string document = read_file(path);
    if (document.size() > 20'000) continue;
    ++small_documents;
    SCOPED_TRACE(testing::PrintToString(path));
    const auto expected = extract(document);
    for (const std::size_t block_size : {1u, 2u, 3u, 7u, 31u, 32u, 33u, 64u, 1000u}) {
      BlockSizeScope scope(block_size);
      ASSERT_EQ(extract(document), expected);
      ASSERT_EQ(insert().rtf, document);
    }
  }
  EXPECT_GT(small_documents, 0u);
}

}  // namespace
}  // namespace kavo::test
