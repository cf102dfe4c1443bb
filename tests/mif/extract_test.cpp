#include <gtest/gtest.h>

#include "mif/mif_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using Strings = std::vector<std::string>;
class ExtractTest : public MifTest {};

TEST_F(ExtractTest, SideFilesLookSo) {
  utilities.SplitOptions(1);
  EXPECT_EQ(extract("<MIFFile 7.00> # by hand\n" + marker("Apple; Pear") +
                    "<XRefFormats <XRefFormat <XRefName `Page'> <XRefDef `page\\x11 <$pagenum\\>'>> >"
                    "<VariableFormats <VariableFormat <VariableName `Product'> <VariableDef `Kavo'>>>" +
                    number_format("Heading", "<n+\\>.\\\\t")),
            5);
  EXPECT_EQ(get(u"KAVO_ix.mif"),
            "<MIFFile 7.00>\r\n<KAVOSeg 1>\r\n<TextFlow \r\n"
            " <Para \r\n  <KAVOTag `Apple'>\r\n  <ParaLine \r\n   <String `Apple'>\r\n  >\r\n >\r\n"
            " <Para \r\n  <KAVOTag ` Pear'>\r\n  <ParaLine \r\n   <String ` Pear'>\r\n  >\r\n >\r\n"
            ">\r\n");
  EXPECT_EQ(get(u"KAVO_xr.mif"),
            "<MIFFile 7.00>\r\n<TextFlow \r\n"
            " <Para \r\n  <KAVOTag `Page : page\\x11 <$pagenum\\>'>\r\n  <ParaLine \r\n"
            "   <String `page\\x11 <$pagenum\\>'>\r\n  >\r\n >\r\n>\r\n");
  EXPECT_EQ(variable_rows(), (Entries{{"Product : Kavo", "Kavo"}, {"Heading : <n+\\>.\\\\t", "<n+\\>.\\\\t"}}));
}

TEST_F(ExtractTest, EmptyTablesStillGiveWholeFiles) {
  EXPECT_EQ(extract("no statement at all"), 0);
  EXPECT_TRUE(utilities.extracted());
  EXPECT_EQ(get(u"KAVO_ix.mif"), "<MIFFile 5.50>\r\n<KAVOSeg 0>\r\n<TextFlow \r\n>\r\n");
  EXPECT_EQ(get(u"KAVO_xr.mif"), "<MIFFile 5.50>\r\n<TextFlow \r\n>\r\n");
  EXPECT_EQ(get(u"KAVO_va.mif"), "<MIFFile 5.50>\r\n<TextFlow \r\n>\r\n");
}

TEST_F(ExtractTest, HeaderLineIsTheLastOneByteForByte) {
  put(u"a.mif", "<MIFFile 4.00> # one\n");
  put(u"b.mif", "<MIFFile\t9.00>\n<MIFFile  7.00 `a>b' >\n");
  extract({u"a.mif", u"b.mif"});
  EXPECT_TRUE(get(u"KAVO_xr.mif").starts_with("<MIFFile  7.00 `a>b' >\r\n<TextFlow"));
}

TEST_F(ExtractTest, SplitOptionsDecideThePieces) {
  struct Case {
    std::int16_t option;
    std::string_view text;
    Strings expected;
  };
  const Case cases[] = {
      {0, "a;b:c", {"a;b:c"}},
      {1, "a;b:c", {"a", "b:c"}},
      {2, "a;b:c", {"a", "b", "c"}},
      {-1, "a;b", {"a;b"}},
      {3, "a;b:c", {"a", "b:c"}},
      {1, "Apple; Pear", {"Apple", " Pear"}},
      {1, "a;;b", {"a", "", "b"}},
      {1, "a;;b;;", {"a", "", "b"}},
      {1, ";a", {"", "a"}},
      {1, "a;", {"a"}},
      {2, "a:b[sort:key]<$nopage\\>", {"a", "b[sort", "key]<$nopage\\>"}},
      {1, "   ", {}},
      {1, "", {}},
      {1, "\xC3\xBC;\\x8a ;\x8E;", {"\xC3\xBC", "\\x8a ", "\x8E"}},
  };
  for (const Case& test : cases) {
    utilities.SplitOptions(test.option);
    EXPECT_EQ(index_pieces(marker(test.text)), test.expected) << test.text << " with " << test.option;
  }
}

TEST_F(ExtractTest, MarkerTypesAreSelectedIgnoringCase) {
  struct Case {
    const char* name;
    std::u16string_view markers;
    std::string_view document_header;
    std::string_view type;
    bool selected;
  };
  const Case cases[] = {
      {"the default list", u"Index\t", "", "Index", true},
      {"lower case", u"Index\t", "", "index", true},
      {"second name", u"Index\tHeading\t", "", "HEADING", true},
      {"not listed", u"Index\t", "", "Heading", false},
      {"part of a name", u"Index\t", "", "Ind", false},
      {"tail of a name", u"Index\t", "", "dex", false},
      {"without its TAB", u"Index", "", "Index", false},
      {"empty list", u"", "", "Index", false},
      {"escaped letter", u"Gloss\u00E4r\t", "<MIFFile 7.00>", "GLOSS\\x80 R", true},
      {"UTF-8 letter", u"Gloss\u00E4r\t", "<MIFFile 9.00>", "GLOSS\xC3\x84R", true},
  };
  for (const Case& test : cases) {
    utilities.Markers(test.markers);
    const std::string document = std::string(test.document_header) + marker("x", test.type);
    EXPECT_EQ(index_pieces(document), test.selected ? Strings{"x"} : Strings{}) << test.name;
  }
}

TEST_F(ExtractTest, AMarkerTypeInTheAnsiCodePageIsDecodedByIt) {
  const auto code_page = make_code_page("932");
  ports().code_page = code_page.get();
  utilities.Markers(u"\u7D22\u5F15\t");
  EXPECT_EQ(index_pieces("<MIFFile 5.50>" + marker("x", "\x8D\xF5\x88\xF8")), Strings{"x"});
  EXPECT_EQ(index_pieces("<MIFFile 8.00>" + marker("x", "\xE7\xB4\xA2\xE5\xBC\x95")), Strings{"x"});
}

TEST_F(ExtractTest, LowerCaseIndexIsSplitAsIndexIs) {
  utilities.SplitOptions(1);
  EXPECT_EQ(index_pieces(marker("a;b", "index")), (Strings{"a", "b"}));
}

TEST_F(ExtractTest, OtherMarkerTypesAreNotSplit) {
  utilities.SplitOptions(2);
  utilities.Markers(u"Heading\t");
  EXPECT_EQ(index_pieces(marker("a;b:c", "Heading") + marker("", "Heading")), (Strings{"a;b:c", ""}));
}

TEST_F(ExtractTest, MarkersWithoutTypeNameOrTextGiveNothing) {
  EXPECT_EQ(index_pieces("<Marker <MType 2> <MText `x'> >"
                         "<Marker <MTypeName `Index'> >"
                         "<Marker <MTypeName `Index'> <MText `x> > >"),
            Strings{});
}

TEST_F(ExtractTest, TheSamePieceInTwoFilesIsOneRow) {
  put(u"a.mif", marker("x") + marker("y"));
  put(u"b.mif", marker("y") + marker("z") + marker("X"));
  EXPECT_EQ(extract({u"a.mif", u"b.mif"}), 4);
  EXPECT_EQ(index_rows(), (Entries{{"x", "x"}, {"y", "y"}, {"z", "z"}, {"X", "X"}}));
}

TEST_F(ExtractTest, AChangedDefinitionIsANewRow) {
  put(u"a.mif", "<XRefFormats <XRefName `Page'> <XRefDef `p. 1'> <XRefName `Page'> <XRefDef `p. 1'>>");
  put(u"b.mif", "<XRefFormats <XRefName `Page'> <XRefDef `p. 2'>>");
  EXPECT_EQ(extract({u"a.mif", u"b.mif"}), 2);
  EXPECT_EQ(xref_rows(), (Entries{{"Page : p. 1", "p. 1"}, {"Page : p. 2", "p. 2"}}));
}

TEST_F(ExtractTest, NumberFormatsTakeTheTagOrThemselves) {
  EXPECT_EQ(extract(number_format("Body", "") + number_format("", "\\x09 <n\\>") +
                    "<Pgf <PgfTag Body> <PgfNumFormat `A:'>>"
                    "<Pgf <PgfNumFormat `B:'>>"
                    "<Pgf <PgfTag `None'>>"
                    "<Pgf <PgfTag `Open'> <PgfNumFormat `open >"),
            4);
  EXPECT_EQ(
      variable_rows(),
      (Entries{{"Body : ", ""}, {"\\x09 <n\\> : \\x09 <n\\>", "\\x09 <n\\>"}, {"A: : A:", "A:"}, {"B: : B:", "B:"}}));
}

TEST_F(ExtractTest, ValuesWithLineBreaksComeOutAsTheyStand) {
  EXPECT_EQ(index_pieces(marker("one\r\ntwo\nthree")), Strings{"one\r\ntwo\nthree"});
}

TEST_F(ExtractTest, NothingIsCollectedFromAStatementThatNeverCloses) {
  EXPECT_EQ(extract(marker("before") + "<VariableFormats <VariableName `n'> <VariableDef `d'>\n" + marker("after")), 1);
  EXPECT_TRUE(utilities.extracted());
  EXPECT_EQ(index_rows(), (Entries{{"before", "before"}}));
  EXPECT_EQ(variable_rows(), Entries{});
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3042});
}

TEST_F(ExtractTest, ResultsDoNotDependOnBlocksOrLineEnds) {
  const std::string text = "<MIFFile 7.00>\n" + marker("a;\x83\x5C;b") + "<Para " + number_format("T", "N:<n\\>") +
                           "<XRefFormats \n <XRefName `P'> # c>\n <XRefDef `d'>\n>";
  utilities.SplitOptions(1);
  for (const LineEnd& line_end : kLineEnds) {
    const std::string document = with_line_end(text, line_end);
    const auto sides = same_for_every_block_size(document.size(), [&](std::size_t size) {
      BlockSizeScope blocks(size);
      EXPECT_EQ(extract(document), 5);
      return get(u"KAVO_ix.mif") + get(u"KAVO_xr.mif") + get(u"KAVO_va.mif");
    });
    EXPECT_EQ(rows_of(sides).size(), 5u) << line_end.name;
  }
}

TEST_F(ExtractTest, FilesThatCannotBeUsed) {
  utilities.StartBatch();
  EXPECT_EQ(utilities.Extract(), 1);
  utilities.MIFFile(in_folder(u"missing.mif"));
  EXPECT_EQ(utilities.Extract(), 1);
  files.add_folder(in_folder(u"folder.mif"));
  utilities.MIFFile(in_folder(u"folder.mif"));
  EXPECT_EQ(utilities.Extract(), 1);
  EXPECT_FALSE(utilities.extracted());
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3026, 3027, 3028}));
}

TEST_F(ExtractTest, ABatchWithoutAnyUsableFileWritesNothing) {
  utilities.StartBatch();
  utilities.MIFFile(in_folder(u"missing.mif"));
  utilities.Extract();
  EXPECT_EQ(utilities.EndBatch(), 0);
  EXPECT_TRUE(files.all_files().empty());
}

TEST_F(ExtractTest, OneRowIsNotMistakenForAFailure) {
  EXPECT_EQ(extract(marker("x")), 1);
  EXPECT_TRUE(utilities.extracted());
  EXPECT_TRUE(utilities.ErrorList().empty());
}

TEST_F(ExtractTest, APathWithoutFolderGivesSideFilesNamedAfterTheFile) {
  files.put(u"x.mif", marker("x"));
  utilities.StartBatch();
  utilities.MIFFile(u"x.mif");
  utilities.Extract();
  EXPECT_EQ(utilities.IndexFile(), u"x.mif_KAVO_ix.mif");
  EXPECT_EQ(utilities.XrefFile(), u"x.mif_KAVO_xr.mif");
  EXPECT_EQ(utilities.VarFile(), u"x.mif_KAVO_va.mif");
  EXPECT_EQ(utilities.EndBatch(), 0);
  EXPECT_TRUE(files.has(u"x.mif_KAVO_va.mif"));
}

TEST_F(ExtractTest, PathsThatAreSetAreKept) {
  put(u"m.mif", marker("x"));
  utilities.StartBatch();
  utilities.XrefFile(in_folder(u"mine.mif"));
  utilities.MIFFile(in_folder(u"m.mif"));
  utilities.Extract();
  EXPECT_EQ(utilities.EndBatch(), 0);
  EXPECT_TRUE(has(u"mine.mif"));
  EXPECT_FALSE(has(u"KAVO_xr.mif"));
  EXPECT_TRUE(has(u"KAVO_ix.mif"));
}

TEST_F(ExtractTest, SideFilesThatCannotBeWrittenAreCounted) {
  put(u"m.mif", marker("x"));
  utilities.StartBatch();
  utilities.MIFFile(in_folder(u"m.mif"));
  utilities.Extract();
  utilities.IndexFile(u"");
  utilities.XrefFile(u"C:\\no such folder\\x.mif");
  EXPECT_EQ(utilities.EndBatch(), 2);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3021, 3022}));
  EXPECT_TRUE(has(u"KAVO_va.mif"));
  utilities.ClearErrors();
  utilities.IndexFile(u"C:\\no such folder\\i.mif");
  utilities.XrefFile(u"");
  utilities.VarFile(u"");
  EXPECT_EQ(utilities.EndBatch(), 3);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3020, 3023, 3025}));
  utilities.ClearErrors();
  utilities.VarFile(u"C:\\no such folder\\v.mif");
  EXPECT_EQ(utilities.EndBatch(), 3);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3020, 3023, 3024}));
}

TEST_F(ExtractTest, ASideFileNeverReplacesADocumentOfItsBatch) {
  put(u"KAVO_xr.mif", marker("x"));
  utilities.StartBatch();
  utilities.MIFFile(in_folder(u"KAVO_xr.mif"));
  EXPECT_EQ(utilities.Extract(), 1);
  EXPECT_EQ(utilities.EndBatch(), 1);
  EXPECT_EQ(get(u"KAVO_xr.mif"), marker("x"));
}

TEST_F(ExtractTest, ASecondEndBatchWritesTheSame) {
  extract(marker("x"));
  const std::string first = get(u"KAVO_ix.mif");
  put(u"KAVO_ix.mif", "old");
  EXPECT_EQ(utilities.EndBatch(), 0);
  EXPECT_EQ(get(u"KAVO_ix.mif"), first);
}

TEST_F(ExtractTest, StartBatchForgetsEverything) {
  extract("<MIFFile 9.00>" + marker("x"));
  utilities.StartBatch();
  EXPECT_EQ(utilities.IndexFile() + utilities.XrefFile() + utilities.VarFile(), u"");
  EXPECT_EQ(utilities.counts().index_rows, 0);
  put(u"m.mif", marker("y"));
  utilities.MIFFile(in_folder(u"m.mif"));
  EXPECT_EQ(utilities.Extract(), 1);
  utilities.EndBatch();
  EXPECT_EQ(get(u"KAVO_ix.mif").substr(0, 14), "<MIFFile 5.50>");
  EXPECT_EQ(index_rows(), (Entries{{"y", "y"}}));
}

TEST_F(ExtractTest, AFullTableSaysSoOnceAndResultsSaturate) {
  std::string document;
  for (int i = 0; i < 32768 + 5; ++i) document += marker("entry " + std::to_string(i));
  document += marker("entry 7");
  EXPECT_EQ(extract(document), 32767);
  EXPECT_TRUE(utilities.extracted());
  EXPECT_EQ(utilities.counts().index_rows, 32768);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3033});
  EXPECT_EQ(index_rows().size(), 32768u);
}

TEST_F(ExtractTest, EveryTableReportsThatItIsFull) {
  std::string document = "<XRefFormats ";
  for (int i = 0; i < 32769; ++i) document += "<XRefName `n'><XRefDef `" + std::to_string(i) + "'>";
  document += "><VariableFormats ";
  for (int i = 0; i < 32768; ++i) document += "<VariableName `" + std::to_string(i) + "'><VariableDef `d'>";
  document += ">" + number_format("T", "x") + number_format("0", "d");
  extract(document);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3034, 3035}));
  EXPECT_EQ(utilities.counts().xref_rows, 32768);
  EXPECT_EQ(utilities.counts().variable_rows, 32768);
}

TEST_F(ExtractTest, ProgressGrowsToOneHundred) {
  std::vector<std::int16_t> seen;
  utilities.Progress([&](std::int16_t percent) { seen.push_back(percent); });
  extract(std::string(100000, '.'));
  EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.back(), 100);
}

}  // namespace
}  // namespace kavo::test
