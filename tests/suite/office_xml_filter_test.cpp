// The filter of presentations and workbooks, over the XML that an Office program writes of them.
#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "platform/unicode.h"
#include "suite/document/coded_text.h"
#include "suite/filters/office/sheet_name.h"
#include "suite/suite_fixture.h"
#include "support/failures.h"

namespace kavo::test {
namespace {

constexpr std::string_view kStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kavo-office version=\"1\" kind=\"workbook\" order=\"0\" hidden=\"1\" "
    "formulas=\"1\" ungroup=\"0\" tolerance=\"255\" xml:space=\"preserve\">\n";

std::string document(std::string_view content) { return std::string(kStart).append(content) + "</kavo-office>\n"; }

std::string seg(std::string_view content, std::string_view runs = "4", std::string_view place = "sheet:1/cell:A1",
                std::string_view style = {}) {
  return "<seg place=\"" + std::string(place) + "\" check=\"00000000\" runs=\"" + std::string(runs) + "\"" +
         std::string(style) + ">" + std::string(content) + "</seg>\n";
}

class OfficeXmlFilter : public SuiteTest {
 protected:
  static Road road() { return {.filter = u"K19XLSW"}; }
  std::u16string take_apart(std::string_view xml) {
    put(u"book_xls.xml", xml);
    return convert(u"book_xls.xml", road());
  }
  std::u16string translate(std::string_view xml, const Translate& translation) {
    return to_utf16(translated(u"book_xls.xml", xml, translation, road()));
  }
};

TEST_F(OfficeXmlFilter, TextsAreSegmentsAndRunsAreCodes) {
  const struct {
    const char* name;
    std::string xml;
    std::vector<std::u16string> sources;
  } cases[] = {
      {"one run", seg("Here is some text"), {u"Here is some text"}},
      {"characters as references", seg("a &amp; b &lt;c&gt; &quot;d&quot;&#9;e"), {u"a & b << c> \"d\"\te"}},
      {"two runs", seg("<g id=\"1\">plain </g><g id=\"2\">strong</g>", "6 6"), {u"<1>plain </1><2>strong</2>"}},
      {"line break", seg("one<br/>two"), {u"one<1/>two"}},
      {"character that XML lacks", seg("one<char code=\"1\"/>two"), {u"one<1/>two"}},
      {"field", seg("<g id=\"1\">Page </g><x id=\"2\"/>", "5 field"), {u"<1>Page </1><2/>"}},
      {"link", seg("<g id=\"1\">See </g><g id=\"2\">there</g>", "4 link"), {u"<1>See </1><2>there</2>"}},
      {"field alone", seg("<x id=\"1\"/>", "field"), {}},
      {"blanks alone", seg("  "), {}},
      {"nothing", seg(""), {}},
      {"formula", "<formula place=\"sheet:1/cell:B2\">=\"constant\"&amp;B1</formula>\n", {}},
      {"in the document's order", seg("b") + seg("a", "1", "sheet:1/cell:B1"), {u"b", u"a"}},
      {"line of an editor", seg("one\ntwo"), {u"one two"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::u16string> expected = c.sources;
    // Hosts double the "<" of a text.
    for (std::u16string& text : expected)
      if (const std::size_t at = text.find(u"<< c"); at != text.npos) text.replace(at, 4, u"<<c");
    EXPECT_EQ(sources(take_apart(document(c.xml))), expected);
  }
}

TEST_F(OfficeXmlFilter, EachTextHasItsPlaceAsItsName) {
  take_apart(document(seg("Total", "5", "sheet:2/cell:C7")));
  const std::string tud = files.get(in_folder(u"book_xls_FR.tud"));
  EXPECT_NE(tud.find("resname=\"sheet:2/cell:C7\""), std::string::npos);
  EXPECT_NE(tud.find("<context context-type=\"element\">sheet/cell</context>"), std::string::npos);
  EXPECT_NE(tud.find("original=\"book_xls.xml\""), std::string::npos);
}

std::string place(std::string_view path, std::string_view name) {
  return "<place path=\"" + std::string(path) + "\" name=\"" + std::string(name) + "\"/>\n";
}

TEST_F(OfficeXmlFilter, ANoteGivesTheNamesOfSheetAndShape) {
  take_apart(document(place("sheet:1", "R&amp;D &lt;new&gt;") + seg("one") + place("sheet:1/shape:1", "Box") +
                      seg("two", "3", "sheet:1/shape:1/paragraph:1") +
                      seg("three", "5", "sheet:1/shape:11/paragraph:1") + seg("four", "4", "sheet:10/cell:A1") +
                      place("sheet:2", "Next") + seg("five", "4", "sheet:2/cell:A1") +
                      seg("six", "3", "sheet:1/cell:B1")));
  const std::string tud = files.get(in_folder(u"book_xls_FR.tud"));
  const struct {
    std::string_view text, note;
  } cases[] = {{"one", "<note>sheet R&amp;D &lt;new&gt;</note>"},
               {"two", "<note>sheet R&amp;D &lt;new&gt;, shape Box</note>"},
               {"three", "<note>sheet R&amp;D &lt;new&gt;</note>"},
               {"four", ""},
               {"five", "<note>sheet Next</note>"},
               {"six", ""}};
  for (const auto& c : cases) {
    const std::size_t begin = tud.find("<source>" + std::string(c.text) + "</source>");
    ASSERT_NE(begin, tud.npos) << c.text;
    const std::string unit = tud.substr(begin, tud.find("</trans-unit>", begin) - begin);
    EXPECT_EQ(unit.find("<note>") != unit.npos, !c.note.empty()) << unit;
    EXPECT_NE(unit.find(c.note), unit.npos) << unit;
  }
}

TEST_F(OfficeXmlFilter, SheetsColumnsRowsAndStylesCanBeExcluded) {
  const std::string xml = document(
      place("sheet:1", "Prices") + seg("a1") + seg("b1", "2", "sheet:1/cell:B1") +
      seg("c3", "2", "sheet:1/cell:C3", " style=\"Heading 1\"") + seg("remark", "6", "sheet:1/cell:B1/comment") +
      seg("box", "3", "sheet:1/shape:1/paragraph:1") + seg("Prices", "6", "sheet:1/name") + place("sheet:2", "R!D") +
      seg("other b1", "8", "sheet:2/cell:B1") + seg("aa10", "4", "sheet:2/cell:AA10", " style=\"R&amp;D\""));
  using Texts = std::vector<std::u16string>;
  const struct {
    const char* key;
    const char* value;
    Texts texts;
  } cases[] = {
      {"xls.excluded-sheets", "prices", {u"other b1", u"aa10"}},
      {"xls.excluded-sheets", "Sheet, R!D", {u"a1", u"b1", u"c3", u"remark", u"box", u"Prices"}},
      {"xls.excluded-columns", "b", {u"a1", u"c3", u"box", u"Prices", u"aa10"}},
      {"xls.excluded-columns", "Prices!A:C", {u"box", u"Prices", u"other b1", u"aa10"}},
      {"xls.excluded-columns", "R!D!B, AA", {u"a1", u"b1", u"c3", u"remark", u"box", u"Prices"}},
      {"xls.excluded-styles", "heading 1, R&D", {u"a1", u"b1", u"remark", u"box", u"Prices", u"other b1"}},
      {"xls.excluded-rows", "1", {u"c3", u"box", u"Prices", u"aa10"}},
      {"xls.excluded-rows", "Prices!2:9, R!D!10", {u"a1", u"b1", u"remark", u"box", u"Prices", u"other b1"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    Road road = OfficeXmlFilter::road();
    road.options[c.key] = c.value;
    put(u"book_xls.xml", xml);
    const std::u16string tud = convert(u"book_xls.xml", road);
    EXPECT_EQ(sources(tud), c.texts);
    EXPECT_EQ(rebuild(tud, road), xml);
  }
  for (const auto& [key, value] : {std::pair("xls.excluded-columns", "12"), std::pair("xls.excluded-columns", "D:B"),
                                   std::pair("xls.excluded-rows", "B"), std::pair("xls.excluded-rows", "0")}) {
    Road road = OfficeXmlFilter::road();
    road.options[key] = value;
    const auto refused = failure_of([&] { convert(u"book_xls.xml", road); });
    ASSERT_TRUE(refused) << value;
    EXPECT_NE(to_utf8(refused->description()).find("\"" + std::string(value) + "\" is neither one"), std::string::npos);
  }
}

TEST_F(OfficeXmlFilter, UnchangedDocumentsComeBackByteForByteWhereverTheyAreCut) {
  const std::string texts = seg("<g id=\"1\">Page </g><x id=\"2\"/><g id=\"3\"> of &amp;</g>", "5 field 5") +
                            "<!-- <seg> -->\n<formula place=\"a\">=&quot;x&quot;</formula>\n" + seg("caf\u00E9<br/>b") +
                            seg("Sheet1", "6", "sheet:1/name");
  for (std::string xml : {document(texts), document("")})
    for (const std::string_view line_end : {"\n", "\r\n", "\r"}) {
      std::string lines;
      for (const char c : xml) c == '\n' ? lines += line_end : lines += c;
      for (std::size_t block = 1; block < 40; ++block) {
        const BlockSizeScope scope(block);
        const std::u16string tud = take_apart(lines);
        ASSERT_EQ(rebuild(tud, road()), lines) << block;
      }
    }
}

TEST_F(OfficeXmlFilter, TranslationsAreWrittenAsTheFormatWantsThem) {
  const auto content = [](const std::u16string& xml) {
    const std::size_t begin = xml.find(u'>', xml.find(u"<seg ")) + 1;
    return xml.substr(begin, xml.find(u"</seg>") - begin);
  };
  const struct {
    const char* name;
    std::string xml;
    std::u16string translation;
    std::u16string written;
  } cases[] = {
      {"special characters", seg("a"), u"\"a\" & <<b>", u"\"a\" &amp; &lt;b&gt;"},
      {"line break typed by a translator", seg("a"), u"a\nb", u"a<br/>b"},
      {"codes in another order", seg("<g id=\"1\">red </g><g id=\"2\">house</g>", "4 5"), u"<2>maison</2> <1>rouge</1>",
       u"<g id=\"2\">maison</g> <g id=\"1\">rouge</g>"},
      {"a format that is not needed", seg("<g id=\"1\">red </g><g id=\"2\">house</g>", "4 5"), u"<2>maison</2>",
       u"<g id=\"2\">maison</g>"},
      {"sheet name with what it cannot hold", seg("Data", "4", "sheet:1/name"), u"[a/b]", u"(a-b)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::u16string xml = translate(document(c.xml), [&](const std::u16string&) { return c.translation; });
    EXPECT_EQ(content(xml), c.written);
  }
}

TEST_F(OfficeXmlFilter, LinksAndFieldsMustStay) {
  const std::string xml = document(seg("<g id=\"1\">Page </g><x id=\"2\"/><g id=\"3\">x</g>", "5 field link"));
  for (const std::u16string translation : {u"<1>Page</1><3>x</3>", u"<1>Page</1><2/>"})
    EXPECT_NE(
        reason_of([&] { translate(xml, [&](const std::u16string&) { return translation; }); }).find(u" is missing"),
        std::u16string::npos);
}

TEST_F(OfficeXmlFilter, WhatIsNotThisXmlIsRefusedWithItsPlace) {
  const struct {
    const char* name;
    std::string xml;
    std::u16string reason;
  } cases[] = {
      {"empty", "", u"Line 1, column 1: this is not the XML"},
      {"another XML", "<?xml version=\"1.0\"?>\n<html/>", u"Line 2, column 1: this is not the XML"},
      {"another version", "<kavo-office version=\"2\">", u"Line 1, column 1: this is not the XML"},
      {"text without an end", document("") + "<seg place=\"a\" runs=\"1\">a", u"a text does not end"},
      {"tag without an end", std::string(kStart) + "<seg place=\"a", u"Line 3, column 1: a tag does not end"},
      {"entity", document(seg("&eacute;")), u"a text holds a reference that is not known"},
      {"code that the list lacks", document(seg("<g id=\"2\">a</g>", "1")), u"its list of runs does not have"},
      {"end of a code alone", document(seg("a</g>")), u"ends that has not begun"},
      {"other element", document(seg("<b>a</b>")), u"the element \"b\" is not allowed in a text"},
      {"document type", "<!DOCTYPE kavo-office>" + document(""), u"a document type"},
  };
  for (const auto& c : cases)
    EXPECT_NE(reason_of([&] { take_apart(c.xml); }).find(c.reason), std::u16string::npos)
        << c.name << ": " << to_utf8(reason_of([&] { take_apart(c.xml); }));
}

TEST(SheetNames, BecomeWhatASheetCanBeCalled) {
  const struct {
    std::string_view name;
    std::string_view valid;
  } cases[] = {{"Data", "Data"},
               {"\u00DCbersicht 'a'b", "\u00DCbersicht 'a'b"},
               {"[Data]", "(Data)"},
               {"a:b\\c/d?e*f", "a-b-c-d-e-f"},
               {"'quoted'", "quoted"},
               {"", "Sheet"},
               {"''", "Sheet"},
               {"1234567890123456789012345678901", "1234567890123456789012345678901"},
               {"12345678901234567890123456789012", "1234567890123456789012345678901"},
               {"123456789012345678901234567890\U0001F600", "123456789012345678901234567890"}};
  for (const auto& c : cases) EXPECT_EQ(office::valid_sheet_name(c.name), c.valid);
}

}  // namespace
}  // namespace kavo::test
