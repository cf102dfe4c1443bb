// One batch of documents of several versions: texts go into side files of one coding and come back in each document's
// own.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "mif/mif_fixture.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

constexpr std::string_view kJapanese = "\x93\xFA\x96\x7B\x8C\xEA";  // the word in code page 932

std::string xref(std::string_view name, std::string_view definition) {
  return "<XRefFormats <XRefName `" + std::string(name) + "'> <XRefDef `" + std::string(definition) + "'>>\n";
}

class VersionsTest : public MifTest {
 protected:
  void use(std::string_view code_page_name) {
    code_page_ = make_code_page(code_page_name);
    ports().code_page = code_page_.get();
  }
  VersionsTest() { use("1252"); }

  // Replaces a text in all `String` statements of the side file.
  void translate(std::u16string_view side, std::string_view text, std::string_view translation) {
    std::string bytes = get(side);
    const std::string from = "<String `" + std::string(text) + "'>", to = "<String `" + std::string(translation) + "'>";
    const std::size_t at = bytes.find(from);
    ASSERT_NE(at, std::string::npos) << bytes;
    bytes.replace(at, from.size(), to);
    ASSERT_EQ(bytes.find(from), std::string::npos) << "every text is there once";
    put(side, bytes);
  }

 private:
  std::unique_ptr<CodePage> code_page_;
};

struct Document {
  std::u16string_view name;
  std::string_view header;
  std::string_view word, translation;  // as this version writes "naïve", "niño €"
};
constexpr Document kDocuments[] = {{u"a.mif", "<MIFFile 4.00>", "na\\x95 ve", "ni\\x96 o \\xf5 "},
                                   {u"b.mif", "<MIFFile 7.00>", "na\\x95 ve", "ni\\x96 o \\xf5 "},
                                   {u"c.mif", "<MIFFile 10.0>", "na\xC3\xAFve", "ni\xC3\xB1o \xE2\x82\xAC"}};

std::string document_of(const Document& document, std::string_view word) {
  const std::string text(word);
  return std::string(document.header) + "\n" + marker("a;" + text) + xref("Page", text + " <$pagenum\\>\\x11 ") +
         "<VariableFormats <VariableName `" + std::string(document.word) + "'> <VariableDef `" + text + "'>>\n" +
         number_format("T", text + "\\t");
}

TEST_F(VersionsTest, EveryDocumentOfABatchIsMergedInItsOwnCoding) {
  std::vector<const Document*> order = {&kDocuments[0], &kDocuments[1], &kDocuments[2]};
  do {
    utilities.SplitOptions(1);
    const std::initializer_list<std::u16string_view> names = {order[0]->name, order[1]->name, order[2]->name};
    for (const Document* document : order) put(document->name, document_of(*document, document->word));
    extract(names);
    ASSERT_TRUE(utilities.ErrorList().empty());
    // Every text once, in the coding of the last document.
    EXPECT_EQ(index_rows(), (Entries{{"a", "a"}, {std::string(order[2]->word), std::string(order[2]->word)}}));
    EXPECT_EQ(xref_rows().size(), 1u);
    EXPECT_EQ(variable_rows().size(), 2u);
    EXPECT_TRUE(get(u"KAVO_xr.mif").starts_with(std::string(order[2]->header) + "\r\n<TextFlow \r\n"));

    EXPECT_EQ(merge(names), 0);
    EXPECT_EQ(utilities.counts().not_found, 0);
    for (const Document* document : order)
      EXPECT_EQ(get(document->name), document_of(*document, document->word)) << "untouched";

    const std::string word(order[2]->word), translation(order[2]->translation);
    translate(u"KAVO_ix.mif", word, translation);
    translate(u"KAVO_xr.mif", word + " <$pagenum\\>\\x11 ", translation + " <$pagenum\\>\\x11 ");
    translate(u"KAVO_va.mif", word, translation);
    translate(u"KAVO_va.mif", word + "\\t", translation + "\\x09 ");
    EXPECT_EQ(merge(names), 0);
    EXPECT_EQ(utilities.counts().not_found, 0);
    EXPECT_TRUE(utilities.ErrorList().empty());
    for (const Document* document : order)
      EXPECT_EQ(get(document->name), document_of(*document, document->translation)) << document->header;
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(VersionsTest, UntouchedTextsComeBackByteForByte) {
  // Ways of writing that no conversion would choose.
  const std::map<std::u16string_view, std::string> documents = {
      {u"a.mif", "<MIFFile 7.00>\n" + xref("P", "\\x8A \\x8a\\u00e4 \\x06 \\xa1 x") + marker("\\xD5 s;\\xd5 s")},
      {u"b.mif", "<MIFFile 9.00>\n" + xref("P", "\xC3\xA4\\x8a \xE4\\u00e4") + marker("\xC2\xA0\\x11 ;\xFF")},
      {u"c.mif", "<MIFFile 9.00>\n" + xref("\xD0\xB6", "\xD0\xB6 \xF0\x9F\x98\x80") + marker("\xD0\xB6")},
      {u"d.mif", "<MIFFile 6.00>\n<MIFEncoding `" + std::string(kJapanese) + "'>\n" +
                     xref("\x83\x5C", "\x93\x60\\x93 \\x60 \\x8a ") + marker("\x83\x5C;\xB1")},
      {u"e.mif", "\xEF\xBB\xBF<MIFFile 7.00>\n" + xref("P", "\xC3\xA4")},
      {u"f.mif", xref("P", "no version \\x8a ")}};
  std::vector<std::u16string_view> names;
  for (const auto& [name, bytes] : documents) names.push_back(name);
  std::size_t orders = 0;
  do {
    for (const auto& [name, bytes] : documents) put(name, bytes);
    extract({names[0], names[1], names[2], names[3], names[4], names[5]});
    EXPECT_EQ(merge({names[0], names[1], names[2], names[3], names[4], names[5]}), 0);
    EXPECT_EQ(utilities.counts().not_found, 0);
    for (const auto& [name, bytes] : documents) ASSERT_EQ(get(name), bytes) << to_utf8(names.back());
    std::rotate(names.begin(), names.begin() + 1, names.end());
  } while (++orders < names.size());
}

TEST_F(VersionsTest, ACharacterThatDoesNotFitIsReportedWithItsPlace) {
  const std::string old_document = "<MIFFile 7.00>\n" + xref("Page", "on") + xref("See", "see") + marker("x") +
                                   number_format("T", "n") + number_format("T", "n");
  const std::string new_document = "<MIFFile 9.00>\n" + xref("Page", "on");
  put(u"a.mif", old_document);
  put(u"b.mif", new_document);
  extract({u"a.mif", u"b.mif"});
  translate(u"KAVO_xr.mif", "on", "\xD0\xBD\xD0\xB0");
  translate(u"KAVO_xr.mif", "see", "voir");
  translate(u"KAVO_ix.mif", "x", "\xCC\x88");
  translate(u"KAVO_va.mif", "n", "\xC2\xB0\xCB\x9A");
  EXPECT_EQ(merge({u"a.mif"}), 1);
  ASSERT_EQ(message_numbers(), (std::vector<std::int32_t>{3044, 3044, 3044}));
  const auto text = [&](std::size_t i) { return to_utf8(utilities.ErrorList()[i].text); };
  EXPECT_NE(text(0).find(": C:\\book\\a.mif, cross-reference format \"Page\": \"\xD0\xBD\""), std::string::npos)
      << text(0);
  EXPECT_NE(text(1).find("a.mif, index entry \"x\": \"\xCC\x88\""), std::string::npos) << text(1);
  EXPECT_NE(text(2).find("a.mif, variable or number format \"T\": \"\xCB\x9A\""), std::string::npos) << text(2);
  EXPECT_EQ(get(u"a.mif"), "<MIFFile 7.00>\n" + xref("Page", "on") + xref("See", "voir") + marker("x") +
                               number_format("T", "n") + number_format("T", "n"));
  EXPECT_EQ(merge({u"b.mif"}), 0);
  EXPECT_EQ(get(u"b.mif"), "<MIFFile 9.00>\n" + xref("Page", "\xD0\xBD\xD0\xB0"));
}

TEST_F(VersionsTest, SideFilesOfAnOldVersionHoldWhatOnlyNewDocumentsCan) {
  const std::string old_document = "<MIFFile 7.00>\n" + xref("Page", "on"), word = "\xD0\xBD\xD0\xB0";
  put(u"a.mif", "<MIFFile 9.00>\n" + xref("Page", word) + xref("See", "see"));
  put(u"b.mif", old_document);
  extract({u"a.mif", u"b.mif"});
  EXPECT_EQ(xref_rows()[0], (Entry{"Page : \\u043d\\u0430", "\\u043d\\u0430"}));
  translate(u"KAVO_xr.mif", "\\u043d\\u0430", "\\u0432 \\xf5 ");
  translate(u"KAVO_xr.mif", "see", "\\ud83d\\ude00");
  translate(u"KAVO_xr.mif", "on", "\\u00e9\\u0432");
  EXPECT_EQ(merge({u"a.mif"}), 0);
  EXPECT_EQ(get(u"a.mif"),
            "<MIFFile 9.00>\n" + xref("Page", "\xD0\xB2 \xE2\x82\xAC") + xref("See", "\xF0\x9F\x98\x80"));
  EXPECT_EQ(merge({u"b.mif"}), 1);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3044});
  EXPECT_EQ(get(u"b.mif"), old_document);
}

TEST_F(VersionsTest, DoubleByteDocumentsOfOldAndNewVersions) {
  const std::string declaration = "\n<MIFEncoding `" + std::string(kJapanese) + "'>\n";
  const std::string old_word = "\x83\x5C\x93\x60", new_word = "\xE3\x82\xBD\xE4\xBC\x9D";
  const std::string old_translation = "\x8D\xF5\x88\xF8", new_translation = "\xE7\xB4\xA2\xE5\xBC\x95";
  const std::string western = "<MIFFile 5.50>\n" + xref("W", "\\x8a ");
  const auto old_document = [&](const std::string& word) {
    return "<MIFFile 6.00>" + declaration + xref("P", word) + marker(word);
  };
  const auto new_document = [&](const std::string& word) {
    return "<MIFFile 9.00>\n" + xref("P", word) + marker(word);
  };
  struct Case {
    const char* name;
    const char* code_page;
    std::initializer_list<std::u16string_view> names;
    std::string text, translation;  // as the side files have them
    bool is_declared;
  };
  const Case cases[] = {
      {"new last", "1252", {u"w.mif", u"old.mif", u"new.mif"}, new_word, new_translation, false},
      {"old last", "1252", {u"w.mif", u"new.mif", u"old.mif"}, old_word, old_translation, true},
      {"Western last", "1252", {u"old.mif", u"new.mif", u"w.mif"}, old_word, old_translation, true},
      {"old alone", "1252", {u"old.mif"}, old_word, old_translation, false},
      {"code page 932", "932", {u"new.mif", u"old.mif"}, old_word, old_translation, true},
  };
  for (const Case& test : cases) {
    use(test.code_page);
    put(u"w.mif", western);
    put(u"old.mif", old_document(old_word));
    put(u"new.mif", new_document(new_word));
    extract(test.names);
    EXPECT_EQ(index_rows(), (Entries{{test.text, test.text}})) << test.name;
    EXPECT_EQ(get(u"KAVO_xr.mif").find("<MIFEncoding `" + std::string(kJapanese) + "'>\r\n") != std::string::npos,
              test.is_declared)
        << test.name;
    translate(u"KAVO_ix.mif", test.text, test.translation);
    translate(u"KAVO_xr.mif", test.text, test.translation);
    EXPECT_EQ(merge(test.names), 0) << test.name;
    for (const std::u16string_view name : test.names) {
      const std::string expected = name == u"w.mif"     ? western
                                   : name == u"old.mif" ? old_document(old_translation)
                                                        : new_document(new_translation);
      EXPECT_EQ(get(name), expected) << test.name;
    }
  }
}

}  // namespace
}  // namespace kavo::test
