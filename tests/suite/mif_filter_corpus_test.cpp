// Real documents and generated ones on the whole way, unchanged and translated.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "platform/unicode.h"
#include "suite/mif_filter_property.h"
#include "support/corpus.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

TEST(MifFilterCorpus, RealDocumentsSurvive) {
  std::vector<std::u16string> documents = corpus_files(u"mif", {u"mif"});
  // Files with the extension that are something else.
  for (const std::u16string& path : corpus_files(u"mif\\negative", {})) documents.push_back(path);
  if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  std::size_t right = 0;
  std::size_t texts = 0;
  for (const std::u16string& path : documents) {
    SCOPED_TRACE(to_utf8(path));
    std::size_t text_count = 0;
    const std::string broken = broken_mif_property(read_whole(path), 1252, &text_count);
    EXPECT_EQ(broken, "");
    right += broken.empty() ? 1 : 0;
    texts += text_count;
  }
  EXPECT_GT(texts, 0u);
  std::printf("%zu of %zu documents, %zu texts\n", right, documents.size(), texts);
}

// Documents of pieces that meet in every order.
TEST(MifFilterProperty, GeneratedDocumentsSurvive) {
  const std::string_view pieces[] = {"<MIFFile 9.00>",
                                     "<MIFFile 6.00>\n",
                                     "<Para ",
                                     "<Para <ParaLine ",
                                     "<ParaLine ",
                                     "<TextLine ",
                                     "<TextFlow ",
                                     "<Tbl ",
                                     "<ColorCatalog",
                                     "<String `ano'>",
                                     "<String ` '>",
                                     "<String `",
                                     "<String `\\x8e'>",
                                     "<String `\\x8f \\t\\>\\q'>",
                                     "<String `\\x'>",
                                     "<String `41\\'>",
                                     "<String `\xC3\xA9'>",
                                     "<String `\xC3'>",
                                     "<String `\x81'>",
                                     "<String `\xA9o'>",
                                     "<String `\\x05'>",
                                     "<String `\\u00e9\\uD83D\\uDE00'>",
                                     "<String `a\n b'>",
                                     "<Char HardSpace>",
                                     "<Char SoftHyphen >",
                                     "<Char HardReturn>",
                                     "<Char EmDash>",
                                     "<Char Tab>",
                                     "<Font <FTag `B'>>",
                                     "<Font <FTag `'> <FLocked No>>",
                                     "<Font <FTag",
                                     "<XRef <XRefName `e'>>",
                                     "<XRefEnd >",
                                     "<Variable <VariableName `i'>>",
                                     "<Marker <MText `o'>>",
                                     "<ATbl 1>",
                                     "<TextRectID 8>",
                                     "<ElementBegin <ETag `p'>>",
                                     "<ElementEnd `p'>",
                                     "<Pgf <PgfTag `u'>>",
                                     "<KAVOTag `e'>",
                                     "<String `<$o\\>e <n+> \\\\<a>'>",
                                     "<Font <FTag `B'> <FSpread 2>>",
                                     "<Font <FTag `'> <FPairKern No>>",
                                     "<Page <PageType LeftMasterPage> <TextRect <ID 8>>",
                                     "<Page <PageType ReferencePage> <TextRect <ID 9>>",
                                     "<TextFlow <Para <ParaLine <TextRectID 8>",
                                     "<Variable <VariableName `i'> <Unique 7>>",
                                     "<New 1",
                                     ">",
                                     ">>",
                                     "'",
                                     "`",
                                     "# a",
                                     "\n",
                                     "\r\n",
                                     "\r",
                                     "  ",
                                     "&%v <Para `",
                                     "=EndInset",
                                     "\\",
                                     "e",
                                     "\xFF"};
  std::mt19937 random(20261);
  for (int round = 0; round < tries(600); ++round) {
    std::string document;
    if (random() % 2 == 0) document = "<MIFFile 8.00><Para <ParaLine ";
    for (unsigned i = random() % 30; i > 0; --i) document += pieces[random() % std::size(pieces)];
    const BlockSizeScope scope(1 + random() % 64);
    ASSERT_EQ(broken_mif_property(document, 1252), "") << document;
    ASSERT_EQ(broken_mif_property(document, 932), "") << document;
  }
}

}  // namespace
}  // namespace kavo::test
