#include <gtest/gtest.h>

#include "mif/mif_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

class MergeTest : public MifTest {
 protected:
  // Side files with these rows, as extraction writes them; the text is what a translator made of it.
  void put_index(int split_option, const Entries& rows) {
    put(u"KAVO_ix.mif", "<MIFFile 7.00>\r\n<KAVOSeg " + std::to_string(split_option) + ">\r\n" + flow(rows));
  }
  void put_xrefs(const Entries& rows) { put(u"KAVO_xr.mif", "<MIFFile 7.00>\r\n" + flow(rows)); }
  void put_variables(const Entries& rows) { put(u"KAVO_va.mif", "<MIFFile 7.00>\r\n" + flow(rows)); }
  void put_empty_side_files() {
    put_index(0, {});
    put_xrefs({});
    put_variables({});
  }

 private:
  static std::string flow(const Entries& rows) {
    std::string text = "<TextFlow \r\n";
    for (const Entry& row : rows)
      text += " <Para \r\n  <KAVOTag `" + row.first + "'>\r\n  <ParaLine \r\n   <String `" + row.second +
              "'>\r\n  >\r\n >\r\n";
    return text + ">\r\n";
  }
};

TEST_F(MergeTest, EveryKindOfValueIsReplacedAndNothingElse) {
  put_index(1, {{"Apple", "Apfel"}, {" Pear", " Birne"}});
  put_xrefs({{"Page : page <$pagenum\\>", "Seite <$pagenum\\>"}});
  put_variables({{"Product : Kavo", "KAVO (de)"}, {"Table : T:Table <n+\\>: ", "T:Tabelle <n+\\>: "}});
  const std::string before = "<MIFFile 7.00> # x\n<Para " + marker("Apple; Pear") +
                             "<XRefFormats \n<XRefName `Page'>\n<XRefDef `page <$pagenum\\>'>\n> # end\n"
                             "<VariableFormats <VariableName `Product'> <VariableDef `Kavo'>>\n" +
                             number_format("Table", "T:Table <n+\\>: ") + "tail";
  const std::string after = "<MIFFile 7.00> # x\n<Para " + marker("Apfel; Birne") +
                            "<XRefFormats \n<XRefName `Page'>\n<XRefDef `Seite <$pagenum\\>'>\n> # end\n"
                            "<VariableFormats <VariableName `Product'> <VariableDef `KAVO (de)'>>\n" +
                            number_format("Table", "T:Tabelle <n+\\>: ") + "tail";
  const std::string result = same_for_every_block_size(before.size(), [&](std::size_t size) {
    BlockSizeScope blocks(size);
    return merged(before);
  });
  EXPECT_EQ(result, after);
  EXPECT_EQ(utilities.counts().replaced, 5);
  EXPECT_EQ(utilities.counts().not_found, 0);
}

TEST_F(MergeTest, AFileWithoutCollectedStatementsComesOutByteForByte) {
  put_empty_side_files();
  std::string document = "no statement <Para <Pgf> >\r\r\n\n";
  for (int byte = 0; byte < 256; ++byte) document += static_cast<char>(byte);
  EXPECT_EQ(merged(document), document);
  EXPECT_EQ(merged(""), "");
}

TEST_F(MergeTest, TheSplitOptionOfTheSideFileWins) {
  put_empty_side_files();
  put_index(1, {{"a", "A"}, {"b", "B"}});
  utilities.SplitOptions(0);
  EXPECT_EQ(merged(marker("a;b")), marker("A;B"));
  EXPECT_EQ(utilities.SplitOptions(), 1);
}

TEST_F(MergeTest, SeparatorsStayWhereTheyWere) {
  put_empty_side_files();
  put_index(2, {{"a", "A"}, {"b", "B"}, {"", "?"}});
  EXPECT_EQ(merged(marker(";a:b;;c:")), marker("?;A:B;?;c:"));
}

TEST_F(MergeTest, AChangedDefinitionKeepsItsText) {
  put_empty_side_files();
  put_xrefs({{"Page : page", "Seite"}});
  const std::string changed = "<XRefFormats <XRefName `Page'> <XRefDef `on page'>>";
  EXPECT_EQ(merged(changed), changed);
  EXPECT_EQ(utilities.counts().not_found, 1);
}

TEST_F(MergeTest, AnEmptyTranslationKeepsTheText) {
  put_empty_side_files();
  put_xrefs({{"Page : page", ""}});
  put_variables({{"T : x", ""}, {"V : v", ""}});
  const std::string document = "<XRefFormats <XRefName `Page'> <XRefDef `page'>>" + number_format("T", "x") +
                               "<VariableFormats <VariableName `V'> <VariableDef `v'>>";
  EXPECT_EQ(merged(document), document);
}

TEST_F(MergeTest, HexadecimalTabsBecomeShortOnesInNumberFormats) {
  put_empty_side_files();
  put_variables({{"T : a", "\\x09 A\\x09 \\x09\\x08 "}, {"V : v", "\\x09 V"}});
  EXPECT_EQ(merged(number_format("T", "a")), number_format("T", "\\tA\\t\\x09\\x08 "));
  EXPECT_EQ(merged(number_format("T", "untranslated\\x09 ")), number_format("T", "untranslated\\t"));
  EXPECT_EQ(merged("<VariableFormats <VariableName `V'> <VariableDef `v'>>"),
            "<VariableFormats <VariableName `V'> <VariableDef `\\x09 V'>>");
}

TEST_F(MergeTest, ATrailByteBackslashIsNotATabEscape) {
  const auto code_page = make_code_page("932");
  ports().code_page = code_page.get();
  put_empty_side_files();
  const std::string document = "<MIFFile 5.50>" + number_format("T", "\x83\x5Cx09 ");
  EXPECT_EQ(merged(document), document);
}

TEST_F(MergeTest, NumberFormatsWithoutTagAreFoundByTheirText) {
  put_empty_side_files();
  put_variables({{"A: : A:", "B:"}});
  EXPECT_EQ(merged("<Pgf <PgfTag Body> <PgfNumFormat `A:'>>"), "<Pgf <PgfTag Body> <PgfNumFormat `B:'>>");
  EXPECT_EQ(merged(number_format("", "A:")), number_format("", "B:"));
}

TEST_F(MergeTest, AnUnselectedMarkerTypeStaysThoughItsTextIsInTheTable) {
  put_empty_side_files();
  put_index(0, {{"x", "X"}});
  EXPECT_EQ(merged(marker("x", "Heading")), marker("x", "Heading"));
}

TEST_F(MergeTest, AMarkerTypeInAnotherCaseIsExtractedButNotMerged) {
  EXPECT_EQ(index_pieces(marker("x", "index")), std::vector<std::string>{"x"});
  put_index(0, {{"x", "X"}});
  EXPECT_EQ(merged(marker("x", "index") + marker("x", "Index")), marker("x", "index") + marker("X", "Index"));
}

TEST_F(MergeTest, OtherMarkerTypesAreReplacedWhole) {
  put_empty_side_files();
  put_index(1, {{"a;b", "A;B"}, {"a", "?"}});
  utilities.Markers(u"Heading\tGloss\u00E4r\t");
  EXPECT_EQ(merged("<MIFFile 7.00>" + marker("a;b", "Heading") + marker("a;b", "Gloss\\x8a r")),
            "<MIFFile 7.00>" + marker("A;B", "Heading") + marker("A;B", "Gloss\\x8a r"));
}

TEST_F(MergeTest, LookupsAreCaseSensitive) {
  put_empty_side_files();
  put_index(0, {{"apple", "Apfel"}});
  EXPECT_EQ(merged(marker("Apple")), marker("Apple"));
}

TEST_F(MergeTest, ValuesWithoutClosingQuoteLeaveTheStatement) {
  put_empty_side_files();
  put_index(0, {{"x", "X"}});
  const std::string document = "<Marker <MTypeName `Index'> <MText `x> <Pgf <PgfNumFormat `y";
  EXPECT_EQ(merged(document), document);
}

TEST_F(MergeTest, AStatementThatNeverClosesIsWrittenThrough) {
  put_empty_side_files();
  put_index(0, {{"x", "X"}});
  const std::string document = marker("x") + "<VariableFormats <V 1>\n" + marker("x");
  EXPECT_EQ(merged(document), marker("X") + "<VariableFormats <V 1>\n" + marker("x"));
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3042});
}

TEST_F(MergeTest, SideFilesComeBackFromToolsInManyShapes) {
  struct Case {
    const char* name;
    std::string index;
  };
  const std::string rows =
      "<TextFlow <Para <KAVOTag `a'> <ParaLine <String `A'>>> <Para <KAVOTag `b'> <ParaLine "
      "<String `B'>>>>";
  const Case cases[] = {
      {"on one line", "<MIFFile 7.00><KAVOSeg 1>" + rows},
      {"byte order mark", "\xEF\xBB\xBF<MIFFile 9.00>\n<KAVOSeg 1>\n" + rows},
      {"wrapped statements",
       "<MIFFile\n7.00><KAVOSeg\r\n1\r\n><TextFlow\n<Para\n<KAVOTag\n`a'>\n<ParaLine\n<String\n\t`A'\n>>>"
       "<Para\t<KAVOTag  `b'><ParaLine<String  `B'>>>>"},
      {"extra statements",
       "<KAVOSeg 1><Para <Unique 1> <PgfTag `Body'> <KAVOTag `a'> <Pgf <PgfNumFormat `n'>> <ParaLine <TextRectID 7> "
       "<Char Tab> <String `A'> <Font <FTag `'> # end of Font\n> <String `more'>>> # end of Para\n<Para <KAVOTag `b'> "
       "<StringX `no'> <String `B'>>"},
      {"reordered", "<KAVOSeg 1><Para <KAVOTag `b'><String `B'>><Para <KAVOTag `a'><String `A'>>"},
      {"doubled: the first wins",
       "<KAVOSeg 1><Para <KAVOTag `a'><String `A'>><Para <KAVOTag `a'><String `?'>><Para <KAVOTag `b'><String `B'>>"},
      {"paragraphs without tag or text",
       "<KAVOSeg 1><Para <String `?'>><Para <KAVOTag `a'>><Para <String `?'> <KAVOTag `b'>>" + rows},
  };
  for (const Case& test : cases) {
    put_empty_side_files();
    for (const LineEnd& line_end : kLineEnds) {
      put(u"KAVO_ix.mif", with_line_end(test.index, line_end));
      EXPECT_EQ(merged(marker("a;b")), marker("A;B")) << test.name << " with " << line_end.name;
    }
  }
}

TEST_F(MergeTest, MissingEntriesStayUntranslated) {
  put_empty_side_files();
  put_index(1, {{"b", "B"}});
  EXPECT_EQ(merged(marker("a;b")), marker("a;B"));
  EXPECT_EQ(utilities.counts().replaced, 1);
  EXPECT_EQ(utilities.counts().not_found, 1);
}

TEST_F(MergeTest, MissingSideFilesAreFailuresAndTheRestIsMerged) {
  put_index(0, {{"x", "X"}});
  put(u"m.mif", marker("x"));
  EXPECT_EQ(merge({u"m.mif"}), 2);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3037, 3038}));
  EXPECT_EQ(get(u"m.mif"), marker("X"));
  utilities.StartBatch();
  utilities.MIFFile(in_folder(u"m.mif"));
  utilities.IndexFile(in_folder(u"none.mif"));
  EXPECT_EQ(utilities.Merge(), 3);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3036, 3037, 3038}));
}

TEST_F(MergeTest, SideFilesAreReadOncePerBatch) {
  put_empty_side_files();
  put_index(0, {{"x", "X"}});
  put(u"a.mif", marker("x"));
  put(u"b.mif", marker("x"));
  utilities.StartBatch();
  utilities.MIFFile(in_folder(u"a.mif"));
  EXPECT_EQ(utilities.Merge(), 0);
  put_index(0, {{"x", "later"}});
  utilities.MIFFile(in_folder(u"b.mif"));
  EXPECT_EQ(utilities.Merge(), 0);
  EXPECT_EQ(get(u"a.mif") + get(u"b.mif"), marker("X") + marker("X"));
  put(u"b.mif", marker("x"));
  EXPECT_EQ(merge({u"b.mif"}), 0);
  EXPECT_EQ(get(u"b.mif"), marker("later"));
}

TEST_F(MergeTest, FilesThatCannotBeUsed) {
  put_empty_side_files();
  utilities.StartBatch();
  EXPECT_EQ(utilities.Merge(), 1);
  utilities.MIFFile(in_folder(u"missing.mif"));
  EXPECT_EQ(utilities.Merge(), 1);
  files.add_folder(in_folder(u"folder.mif"));
  utilities.MIFFile(in_folder(u"folder.mif"));
  EXPECT_EQ(utilities.Merge(), 1);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3026, 3027, 3028}));
}

TEST_F(MergeTest, WithoutATemporaryFileTheDocumentStays) {
  put_empty_side_files();
  put(u"m.mif", marker("x"));
  files.set_temporary_folder(u"C:\\no such folder");
  EXPECT_EQ(merge({u"m.mif"}), 1);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3031});
  EXPECT_EQ(get(u"m.mif"), marker("x"));
}

TEST_F(MergeTest, AReadOnlyFileIsReplaced) {
  put_empty_side_files();
  put_index(0, {{"x", "X"}});
  put(u"m.mif", marker("x"));
  files.set_read_only(in_folder(u"m.mif"), true);
  EXPECT_EQ(merge({u"m.mif"}), 0);
  EXPECT_EQ(get(u"m.mif"), marker("X"));
}

TEST_F(MergeTest, NoTemporaryFileIsLeft) {
  extract(marker("x"));
  const auto before = files.all_files();
  EXPECT_EQ(merge({u"m.mif"}), 0);
  EXPECT_EQ(files.all_files(), before);
}

TEST_F(MergeTest, TheFirstRowServesAllValuesOfOneTag) {
  const std::string document =
      "<MIFFile 9.00><XRefFormats <XRefName `a : b'> <XRefDef `c'> <XRefName `a'> <XRefDef `b : c'>>";
  const std::string both =
      "<MIFFile 9.00><XRefFormats <XRefName `a : b'> <XRefDef `first'> <XRefName `a'> <XRefDef `first'>>";
  put_empty_side_files();
  struct Case {
    const char* name;
    Entries rows;
  };
  for (const Case& test : {Case{"both translated", {{"a : b : c", "first"}, {"a : b : c", "second"}}},
                           Case{"the second as it was", {{"a : b : c", "first"}, {"a : b : c", "b : c"}}}}) {
    put_xrefs(test.rows);
    EXPECT_EQ(merged(document), both) << test.name;
    EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3045}) << test.name;
  }
}

TEST_F(MergeTest, AFileThatCannotBeOpenedGivesOneWhateverElseFails) {
  files.add_folder(in_folder(u"folder.mif"));
  EXPECT_EQ(merge({u"folder.mif"}), 1);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3036, 3037, 3038, 3028}));
}

TEST_F(MergeTest, RequiredSideFilesAreReadBeforeAnyDocumentIsTouched) {
  put_index(0, {{"x", "X"}});
  put(u"a.mif", marker("x"));
  put(u"b.mif", marker("x"));
  utilities.require_side_files();
  EXPECT_EQ(merge({u"a.mif", u"b.mif"}), 4);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3037, 3038, 3037, 3038}));
  EXPECT_EQ(get(u"a.mif") + get(u"b.mif"), marker("x") + marker("x"));
  put_xrefs({});
  put_variables({});
  EXPECT_EQ(merge({u"a.mif", u"b.mif"}), 0);
  EXPECT_EQ(get(u"a.mif") + get(u"b.mif"), marker("X") + marker("X"));
}

TEST_F(MergeTest, UntouchedSideFilesGiveTheFilesBack) {
  const std::string a = "<MIFFile 7.00>" + marker("a;b:c") + number_format("T", "x") + marker("multi\r\nline\n");
  const std::string b = "<MIFFile 9.00>" + marker("a;;") + number_format("U", "x") +
                        "<XRefFormats <XRefName `P'> <XRefDef `\xC3\xA4 <$p\\>'>>";
  for (const std::int16_t option : {0, 1, 2}) {
    utilities.SplitOptions(option);
    put(u"a.mif", a);
    put(u"b.mif", b);
    extract({u"a.mif", u"b.mif"});
    EXPECT_EQ(merge({u"a.mif", u"b.mif"}), 0);
    EXPECT_EQ(get(u"a.mif"), a);
    EXPECT_EQ(get(u"b.mif"), b);
    EXPECT_EQ(utilities.counts().not_found, 0);
  }
}

}  // namespace
}  // namespace kavo::test
