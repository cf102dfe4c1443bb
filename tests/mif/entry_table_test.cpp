#include "mif/entry_table.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kavo::test {
namespace {

// The table as a list that is scanned from its beginning.
class ListTwin {
 public:
  explicit ListTwin(EntryTable::Same same) : same_(same) {}

  EntryTable::Added add(const std::string& name, const std::string& text) {
    for (const auto& row : rows)
      if (row.first == name && (same_ == EntryTable::Same::kName || row.second == text))
        return EntryTable::Added::kKnown;
    if (rows.size() == EntryTable::kMostRows) return EntryTable::Added::kFull;
    rows.emplace_back(name, text);
    return EntryTable::Added::kNew;
  }
  std::optional<std::string_view> find(const std::string& name) const {
    for (const auto& row : rows)
      if (row.first == name) return row.second;
    return std::nullopt;
  }

  std::vector<std::pair<std::string, std::string>> rows;

 private:
  EntryTable::Same same_;
};

TEST(EntryTable, AgreesWithAListScannedFromItsBeginning) {
  for (const auto same : {EntryTable::Same::kName, EntryTable::Same::kNameAndText}) {
    EntryTable table(same);
    ListTwin twin(same);
    std::mt19937 random(7);
    const auto some_text = [&] { return std::string(random() % 3, 'x') + std::to_string(random() % 40); };
    for (int i = 0; i < 5000; ++i) {
      const std::string name = some_text(), text = some_text();
      ASSERT_EQ(table.find(name), twin.find(name));
      ASSERT_EQ(table.add(name, text), twin.add(name, text));
    }
    ASSERT_EQ(table.size(), twin.rows.size());
    for (std::size_t row = 0; row < table.size(); ++row) {
      EXPECT_EQ(table.name(row), twin.rows[row].first);
      EXPECT_EQ(table.text(row), twin.rows[row].second);
    }
    table.clear();
    EXPECT_EQ(table.size(), 0u);
    EXPECT_EQ(table.find("1"), std::nullopt);
    EXPECT_EQ(table.add("1", "2"), EntryTable::Added::kNew);
  }
}

TEST(EntryTable, NameAndTextAreKeptApartWhereverTheyMeet) {
  EntryTable table(EntryTable::Same::kNameAndText);
  EXPECT_EQ(table.add("ab", "c"), EntryTable::Added::kNew);
  EXPECT_EQ(table.add("a", "bc"), EntryTable::Added::kNew);
  EXPECT_EQ(table.add("", "abc"), EntryTable::Added::kNew);
  EXPECT_EQ(table.add("ab", "c"), EntryTable::Added::kKnown);
  EXPECT_EQ(table.find("a"), "bc");
}

TEST(EntryTable, IsFullAt32768Rows) {
  EntryTable table(EntryTable::Same::kName);
  for (std::size_t i = 0; i < EntryTable::kMostRows; ++i)
    ASSERT_EQ(table.add(std::to_string(i), "t"), EntryTable::Added::kNew);
  EXPECT_EQ(table.size(), 32768u);
  EXPECT_EQ(table.add("one more", "t"), EntryTable::Added::kFull);
  EXPECT_EQ(table.add("7", "t"), EntryTable::Added::kKnown);
  EXPECT_EQ(table.find("one more"), std::nullopt);
  EXPECT_EQ(table.find("32767"), "t");
}

// Many names with one text, and many texts under one name: no look-up walks along a chain of rows.
TEST(EntryTable, ManyTextsOfOneName) {
  EntryTable table(EntryTable::Same::kNameAndText);
  for (std::size_t i = 0; i < EntryTable::kMostRows; ++i)
    ASSERT_EQ(table.add("name", std::to_string(i)), EntryTable::Added::kNew);
  EXPECT_EQ(table.find("name"), "0");
}

}  // namespace
}  // namespace kavo::test
