// What must hold on real files: untouched side files give every byte back, marked ones mark every selected value and
// nothing else, and objects return to where they were.
#include "support/corpus.h"

#include <gtest/gtest.h>

#include <functional>

#include "mif/mif_fixture.h"
#include "mif/statement_twin.h"
#include "platform/files.h"
#include "support/splits.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

using Change = std::function<std::string(const std::string& value)>;

// The value between `label` and the next "'" at or after `from`; {npos, npos} when there is none.
std::pair<std::size_t, std::size_t> place_of(const std::string& text, std::string_view label, std::size_t from = 0) {
  const std::size_t found = text.find(label, from);
  if (found == std::string::npos) return {found, found};
  const std::size_t end = text.find('\'', found + label.size());
  if (end == std::string::npos) return {end, end};
  return {found + label.size(), end};
}

std::string with_short_tabs(std::string value) {
  constexpr std::string_view long_tab = "\\x09 ";
  for (std::size_t at = 0; (at = value.find(long_tab, at)) != std::string::npos; at += 2)
    value.replace(at, long_tab.size(), "\\t");
  return value;
}

// A document with every value that the default options select changed, written as plainly as possible.
class Model {
 public:
  Model(std::int16_t split_options, Change change)
      : separators_(split_options == 2   ? ";:"
                    : split_options == 1 ? ";"
                                         : ""),
        change_(change) {}

  std::string run(const std::vector<std::string>& parts) const {
    std::string result;
    for (std::size_t i = 0; i < parts.size(); ++i) result += i % 2 == 0 ? parts[i] : changed(parts[i]);
    return result;
  }

 private:
  std::string changed(std::string statement) const {
    if (statement.starts_with("<Marker ")) return marker(statement);
    if (statement.starts_with("<XRefFormats ")) return pairs(statement, "<XRefName `", "<XRefDef `");
    if (statement.starts_with("<VariableFormats ")) return pairs(statement, "<VariableName `", "<VariableDef `");
    const auto [begin, end] = place_of(statement, "<PgfNumFormat `");
    if (begin == std::string::npos) return statement;
    return statement.replace(begin, end - begin, with_short_tabs(change_(statement.substr(begin, end - begin))));
  }

  std::string marker(std::string statement) const {
    const auto [type_begin, type_end] = place_of(statement, "<MTypeName `");
    if (type_begin == std::string::npos || statement.substr(type_begin, type_end - type_begin) != "Index")
      return statement;
    const auto [begin, end] = place_of(statement, "<MText `");
    if (begin == std::string::npos) return statement;
    const std::string value = statement.substr(begin, end - begin);
    if (value.find_first_not_of(' ') == std::string::npos) return statement;
    std::string result, piece;
    for (const char c : value) {
      if (separators_.find(c) == std::string::npos) {
        piece += c;
      } else {
        result += change_(piece) + c;
        piece.clear();
      }
    }
    if (!piece.empty()) result += change_(piece);
    return statement.replace(begin, end - begin, result);
  }

  std::string pairs(std::string statement, std::string_view name_label, std::string_view text_label) const {
    for (std::size_t from = 0;;) {
      const auto [name_begin, name_end] = place_of(statement, name_label, from);
      if (name_begin == std::string::npos) return statement;
      const auto [begin, end] = place_of(statement, text_label, name_end);
      if (begin == std::string::npos) return statement;
      const std::string value = change_(statement.substr(begin, end - begin));
      statement.replace(begin, end - begin, value);
      from = begin + value.size();
    }
  }

  std::string separators_;
  Change change_;
};

// Every String of a side file between brackets.
std::string marked(const std::string& side_file) {
  constexpr std::string_view label = "<String `";
  std::string result;
  for (std::size_t at = 0;;) {
    const std::size_t found = side_file.find(label, at);
    if (found == std::string::npos) return result += side_file.substr(at);
    const std::size_t begin = found + label.size();
    const std::size_t end = side_file.find('\'', begin);
    result += side_file.substr(at, begin - at) + "[" + side_file.substr(begin, end - begin) + "]";
    at = end;
  }
}

class MifCorpusTest : public MifTest {
 protected:
  struct Document {
    std::u16string name;
    std::string bytes;
    std::vector<std::string> parts;
  };

  static void SetUpTestSuite() {
    for (const std::u16string& path : corpus_files(u"mif", {u"mif"})) {
      const std::string bytes = read_file(path);
      StatementTwin twin(bytes, {"<XRefFormats ", "<Marker ", "<VariableFormats ", "<Pgf "}, nullptr);
      documents.push_back({path.substr(path.rfind(u'\\') + 1), bytes, twin.parts()});
    }
  }
  static void TearDownTestSuite() { documents.clear(); }
  void SetUp() override {
    if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  }
  void extract_all() {
    utilities.StartBatch();
    for (const Document& document : documents) {
      put(document.name, document.bytes);
      utilities.MIFFile(in_folder(document.name));
      utilities.Extract();
      EXPECT_TRUE(utilities.extracted());
    }
    EXPECT_EQ(utilities.EndBatch(), 0);
    EXPECT_TRUE(utilities.ErrorList().empty());
  }
  void mark_side_files() {
    for (const std::u16string_view side : {u"KAVO_ix.mif", u"KAVO_xr.mif", u"KAVO_va.mif"})
      put(side, marked(get(side)));
  }

  inline static std::vector<Document> documents;
};

TEST_F(MifCorpusTest, UntouchedSideFilesGiveEveryByteBack) {
  for (const std::int16_t option : {0, 1, 2}) {
    utilities.SplitOptions(option);
    for (const Document& document : documents) {
      SCOPED_TRACE(path_to_host(document.name));
      put(document.name, document.bytes);
      extract({document.name});
      EXPECT_EQ(merge({document.name}), 0);
      EXPECT_EQ(utilities.counts().not_found, 0);
      const std::string expected = Model(option, [](const std::string& value) { return value; }).run(document.parts);
      EXPECT_TRUE(get(document.name) == expected);
      EXPECT_TRUE(with_short_tabs(expected) == with_short_tabs(document.bytes));
    }
  }
}

TEST_F(MifCorpusTest, MarkedSideFilesMarkEverySelectedValueAndNothingElse) {
  std::int64_t replaced = 0;
  for (const std::int16_t option : {0, 1, 2}) {
    utilities.SplitOptions(option);
    for (const Document& document : documents) {
      SCOPED_TRACE(path_to_host(document.name));
      put(document.name, document.bytes);
      extract({document.name});
      mark_side_files();
      EXPECT_EQ(merge({document.name}), 0);
      EXPECT_EQ(utilities.counts().not_found, 0);
      replaced += utilities.counts().replaced;
      const Change mark = [](const std::string& value) { return "[" + value + "]"; };
      EXPECT_TRUE(get(document.name) == Model(option, mark).run(document.parts));
    }
  }
  EXPECT_GT(replaced, 4000);
}

TEST_F(MifCorpusTest, OneBatchOfAllFilesMergesIntoEach) {
  utilities.SplitOptions(1);
  extract_all();
  EXPECT_GT(utilities.counts().index_rows, 100);
  EXPECT_GT(utilities.counts().xref_rows, 10);
  EXPECT_GT(utilities.counts().variable_rows, 100);
  mark_side_files();
  utilities.StartBatch();
  for (const Document& document : documents) {
    utilities.MIFFile(in_folder(document.name));
    EXPECT_EQ(utilities.Merge(), 0);
    const Change mark = [](const std::string& value) { return "[" + value + "]"; };
    EXPECT_TRUE(get(document.name) == Model(1, mark).run(document.parts)) << path_to_host(document.name);
  }
  EXPECT_EQ(utilities.counts().not_found, 0);
}

TEST_F(MifCorpusTest, ObjectsReturnToWhereTheyWere) {
  std::int64_t objects = 0;
  for (const Document& document : documents) {
    for (const LineEnd& line_end : kLineEnds) {
      SCOPED_TRACE(path_to_host(document.name) + " with " + line_end.name);
      const std::string bytes = with_line_end(document.bytes, line_end);
      const std::string with_crlf = with_line_end(document.bytes, {"CR LF", "\r\n"});
      utilities.StartBatch();
      put(document.name, bytes);
      utilities.MIFFile(in_folder(document.name));
      utilities.ObjFile(u"");
      ASSERT_EQ(utilities.RemoveObjects(), 0);
      objects += utilities.counts().objects_removed;
      const bool had_objects = utilities.counts().objects_removed != 0;
      EXPECT_TRUE(had_objects || get(document.name) == bytes);
      ASSERT_EQ(utilities.InsertObjects(), 0);
      EXPECT_EQ(utilities.counts().objects_missing, 0);
      EXPECT_TRUE(get(document.name) == (had_objects ? with_crlf : bytes));
    }
  }
  EXPECT_GT(objects, 0);
}

}  // namespace
}  // namespace kavo::test
