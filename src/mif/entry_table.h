// The texts collected for one side file, or read back from it: rows of two byte strings in the order first met.
//
// Every result is the one that a scan of all rows from row 0 would give. Hash indexes find it in constant time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class EntryTable {
 public:
  static constexpr std::size_t kMostRows = 32768;

  enum class Same { kName, kNameAndText };  // what makes two entries the same
  enum class Added { kNew, kKnown, kFull };

  explicit EntryTable(Same same) : same_(same) {}

  // Appends a row. Does nothing when the entry is there already (kKnown, even in a full table) or the table is full.
  // `coding` numbers the coding of the bytes: the same bytes in two codings are two entries.
  Added add(std::string_view name, std::string_view text, std::uint8_t coding = 0);
  // The text of the first row with this name (coding 0). A view stays valid until the next add() or clear().
  std::optional<std::string_view> find(std::string_view name) const;

  Same same() const { return same_; }
  std::size_t size() const { return rows_.size(); }
  std::string_view name(std::size_t row) const { return view(rows_[row].begin, rows_[row].name_size); }
  std::string_view text(std::size_t row) const {
    return view(rows_[row].begin + rows_[row].name_size, rows_[row].text_size);
  }
  std::uint8_t coding(std::size_t row) const { return rows_[row].coding; }
  void clear();

 private:
  struct Row {
    std::size_t begin;
    std::uint32_t name_size;
    std::uint32_t text_size;
    std::size_t name_hash;
    std::size_t entry_hash;
    std::uint8_t coding;
  };
  // Open addressing with linear probing. At most half full; grows with the rows.
  using Index = std::vector<std::int32_t>;
  static constexpr std::int32_t kEmpty = -1;

  std::string_view view(std::size_t begin, std::size_t size) const {
    return std::string_view(bytes_).substr(begin, size);
  }
  template <class Matches>
  static std::size_t slot_of(const Index& index, std::size_t hash, Matches matches);
  std::size_t name_slot(std::size_t hash, std::string_view name, std::uint8_t coding) const;
  std::size_t entry_slot(std::size_t hash, std::string_view name, std::string_view text, std::uint8_t coding) const;
  void grow();

  Same same_;
  std::string bytes_;  // the strings of all rows, one after the other
  std::vector<Row> rows_;
  Index by_name_;   // first row of each name
  Index by_entry_;  // every row, when names alone do not distinguish entries
};

}  // namespace kavo
