#include "mif/statement_scanner.h"

#include <gtest/gtest.h>

#include <random>

#include "common/byte_scan.h"
#include "mif/mif_coding.h"
#include "mif/statement_twin.h"
#include "support/corpus.h"
#include "support/ports_fixture.h"
#include "support/splits.h"
#include "support/temp_folder.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

constexpr std::string_view kOpenings[] = {"<MIFFile ", "<XRefFormats ", "<Marker ", "<VariableFormats ", "<Pgf "};
constexpr StatementKeywords kKeywords{kOpenings, find_pair<'<', 'M', 'X', 'V', 'P'>};

class StatementScannerTest : public PortsFixture {
 protected:
  TwinResult scan(std::string_view document, std::size_t block_size) {
    files.put(u"C:\\m.mif", document);
    BlockSizeScope blocks(block_size);
    PendingFile passed(u"C:\\passed");
    TwinResult result;
    {
      StatementScanner scanner(u"C:\\m.mif", kKeywords, nullptr);
      scanner.output(passed);
      while (scanner.ReadNextStatement()) result.statements.emplace_back(scanner.statement());
    }
    passed.commit();
    result.passed = files.get(u"C:\\passed");
    return result;
  }
  TwinResult twin(std::string_view document, const CodePage* code_page = nullptr) {
    return StatementTwin(document, {std::begin(kOpenings), std::end(kOpenings)}, code_page).run();
  }
  std::vector<std::string> statements(std::string_view document) {
    return same_for_every_block_size(document.size(),
                                     [&](std::size_t size) { return scan(document, size).statements; });
  }
};

using Strings = std::vector<std::string>;

TEST_F(StatementScannerTest, StatementsAreFound) {
  struct Case {
    const char* name;
    std::string_view document;
    Strings expected;
  };
  const Case cases[] = {
      {"empty file", "", {}},
      {"one letter", "<", {}},
      {"no statement", "<Para <String `x'>>", {}},
      {"a keyword alone at the end", "<Pgf ", {}},
      {"a keyword in another case", "<pgf x> <PGF x>", {}},
      {"a keyword without its blank", "<Pgf> <Pgf\n>", {}},
      {"the smallest", "<Pgf >", {"<Pgf >"}},
      {"anywhere, also inside other statements", "<Para <Pgf <A 1>> <Marker x>>", {"<Pgf <A 1>>", "<Marker x>"}},
      {"several on a line with >>>>", "<A <B <C <Pgf <X <Y <Z 1>>>>", {"<Pgf <X <Y <Z 1>>>>"}},
      {"nested keyword belongs to the outer one", "<Pgf <Marker 1>> <Pgf 2>", {"<Pgf <Marker 1>>", "<Pgf 2>"}},
      {"> inside a string does not close", "<Pgf `a>b' >x", {"<Pgf `a>b' >"}},
      {"< inside a string does not open", "<Pgf `a<b' >x", {"<Pgf `a<b' >"}},
      {"string ending in an escaped backslash", "<Pgf `a\\\\'> x>", {"<Pgf `a\\\\'>"}},
      {"backquote inside a string", "<Pgf `a`b'> >", {"<Pgf `a`b'>"}},
      {"apostrophe outside strings", "<Pgf don't `x'> >", {"<Pgf don't `x'>"}},
      {"# inside a string is text", "<Pgf <A 1> `#'> >", {"<Pgf <A 1> `#'>"}},
      {"# after < with no > since is text", "<Pgf # <A # 1> >", {"<Pgf # <A # 1> >"}},
      {"# after > begins a comment", "<Pgf <A 1> # >>> <\n>", {"<Pgf <A 1> # >>> <\n>"}},
      {"comment ended by LF", "<Pgf <A 1> #>\n>", {"<Pgf <A 1> #>\n>"}},
      {"comment ended by CR", "<Pgf <A 1> #>\r>", {"<Pgf <A 1> #>\r>"}},
      {"comment ended by TAB", "<Pgf <A 1> #>\t>", {"<Pgf <A 1> #>\t>"}},
      {"comment not ended by a blank", "<Pgf <A 1> # > >\n>", {"<Pgf <A 1> # > >\n>"}},
      {"backquote in a comment opens no string", "<Pgf <A 1> # `\n>", {"<Pgf <A 1> # `\n>"}},
      {"apostrophe in a comment", "<Pgf <A 1> # don't\n>", {"<Pgf <A 1> # don't\n>"}},
      {"multi-line string", "<Pgf `a\n>\r\nb'>", {"<Pgf `a\n>\r\nb'>"}},
      {"a comment in front of a keyword is no comment", "# <Pgf >", {"<Pgf >"}},
      {"cut off by the end of the file", "<Pgf 1> <Marker <A 1>", {"<Pgf 1>"}},
      {"cut off inside a string", "<Pgf 1> <Marker `>", {"<Pgf 1>"}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(statements(test.document), test.expected);
    const TwinResult expected = twin(test.document);
    EXPECT_EQ(scan(test.document, 4096), expected);
  }
}

TEST_F(StatementScannerTest, TrailByteThatLooksLikeABackquoteOpensNoString) {
  const auto code_page = make_code_page("932");
  ports().code_page = code_page.get();
  const std::string_view document = "<MIFFile 5.50> <Pgf \x8E\x60 > <Marker \x8E\x8E`> ' \x83\x60>";
  const Strings expected = {"<MIFFile 5.50>", "<Pgf \x8E\x60 >", "<Marker \x8E\x8E`> ' \x83\x60>"};
  EXPECT_EQ(statements(document), expected);
  EXPECT_EQ(scan(document, 7), twin(document, code_page.get()));
}

TEST_F(StatementScannerTest, Utf8FilesHaveNoLeadBytesWhateverTheCodePage) {
  const auto code_page = make_code_page("932");
  ports().code_page = code_page.get();
  EXPECT_EQ(statements("<MIFFile 9.00> <Pgf \x8E`>'>"), (Strings{"<MIFFile 9.00>", "<Pgf \x8E`>'>"}));
}

TEST_F(StatementScannerTest, AnythingCutAtEveryPlaceAroundTheBlockBoundaryIsFound) {
  constexpr std::size_t boundary = 32768;
  const auto code_page = make_code_page("932");
  ports().code_page = code_page.get();
  const std::string statement = "<Marker \x8E\x60 <MTypeName `Index'> <MText `\x83\x5C\x8E\x60'> >";
  for (std::size_t cut = 0; cut <= statement.size() + 1; ++cut) {
    std::string document = "<MIFFile 5.50>";
    document.append(boundary - cut - document.size(), '.');
    document += statement + "tail";
    const TwinResult found = scan(document, boundary);
    ASSERT_EQ(found.statements, (Strings{"<MIFFile 5.50>", statement})) << "cut after " << cut;
    ASSERT_EQ(found, twin(document, code_page.get()));
  }
}

TEST_F(StatementScannerTest, AgreesWithTheTwinOnGeneratedFiles) {
  constexpr std::string_view parts[] = {"<Marker ",
                                        "<Pgf ",
                                        "<XRefFormats ",
                                        "<VariableFormats ",
                                        "<MIFFile ",
                                        "<Mar",
                                        "<P",
                                        "<Para ",
                                        "<A 1>",
                                        "<",
                                        ">",
                                        ">",
                                        ">",
                                        "`",
                                        "'",
                                        "`",
                                        "'",
                                        "#",
                                        " ",
                                        "\n",
                                        "\r\n",
                                        "\t",
                                        "text",
                                        "\\",
                                        "\\\\'",
                                        "`>'",
                                        "# >\n",
                                        "\x8E\x60",
                                        "\x8E",
                                        "\x60",
                                        "\xE0\x81\x60",
                                        "\xB1"};
  const auto code_page = make_code_page("932");
  std::mt19937 random(2024);
  for (int document_number = 0; document_number < tries(1500); ++document_number) {
    std::string document = "<MIFFile 5.50>";
    for (unsigned count = random() % 120; count > 0; --count) document += parts[random() % std::size(parts)];
    for (const bool double_byte : {false, true}) {
      PortsScope scope;
      if (double_byte) ports().code_page = code_page.get();
      const TwinResult expected = twin(document, double_byte ? code_page.get() : nullptr);
      for (const std::size_t block : {std::size_t{1 + random() % 9}, std::size_t{64}, document.size()})
        ASSERT_EQ(scan(document, block), expected) << document << "\nblocks of " << block;
    }
  }
}

TEST_F(StatementScannerTest, AgreesWithTheTwinOnRealFiles) {
  const auto paths = corpus_files(u"mif", {u"mif"});
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  for (const std::u16string& path : paths) {
    const std::string document = read_file(path);
    EXPECT_EQ(scan(document, 4096), twin(document)) << path_to_host(path);
  }
}

TEST_F(StatementScannerTest, AStatementBeyondTheLimitIsPassedOn) {
  const std::string filler(StatementScanner::kLongestStatement, 'x');
  const std::string document = "<Pgf <A " + filler + ">> <Pgf 2>";
  for (const std::size_t block : {std::size_t{65536}, std::size_t{1 << 20}, document.size()}) {
    const TwinResult found = scan(document, block);
    EXPECT_EQ(found.statements, (Strings{"<Pgf 2>"}));
    EXPECT_EQ(found.passed.size(), document.size() - 7);
  }
  const std::string just_fits = "<Pgf " + filler.substr(6) + ">";
  ASSERT_EQ(just_fits.size(), StatementScanner::kLongestStatement);
  EXPECT_EQ(scan(just_fits, 65536).statements.size(), 1u);
  EXPECT_EQ(scan(just_fits, just_fits.size()).statements.size(), 1u);
}

TEST_F(StatementScannerTest, PassedStatementsAreCountedAndPlaced) {
  files.put(u"C:\\m.mif", "12345<Pgf <A 1>");
  StatementScanner scanner(u"C:\\m.mif", kKeywords, nullptr);
  EXPECT_FALSE(scanner.ReadNextStatement());
  EXPECT_EQ(scanner.passed().count, 1u);
  EXPECT_EQ(scanner.passed().first, 5u);
  EXPECT_FALSE(scanner.passed().first_is_closed);
}

}  // namespace
}  // namespace kavo::test
