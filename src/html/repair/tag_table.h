// The validator's table of checked elements, each with a flag that says whether it may overlap others. The options
// dialog edits its text form, "NAME|FLAG,NAME|FLAG,", and hosts store it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class TagTable {
 public:
  static constexpr std::size_t kCapacity = 128;
  static constexpr int kNotListed = -1;

  // The default table: inline and table elements.
  TagTable();

  std::u16string text() const;
  // Replaces the table. Throws `failure` 9 for more than 128 entries; the table is then as it was.
  void text(std::u16string_view value);

  bool empty() const noexcept { return entries_.empty(); }
  // The index of the element's entry, or kNotListed. Of two entries with the same name the first counts.
  int find(std::uint64_t name_hash) const noexcept {
    for (std::size_t slot = name_hash % kSlots;; slot = (slot + 1) % kSlots)
      if (slots_[slot] == kEmpty || hashes_[static_cast<std::size_t>(slots_[slot])] == name_hash) return slots_[slot];
  }
  // The name as listed, its ASCII letters in upper case. A name that is not ASCII is never found in a page.
  const std::string& name(int entry) const { return names_[static_cast<std::size_t>(entry)]; }
  bool may_overlap(int entry) const { return entries_[static_cast<std::size_t>(entry)].flag == u"1"; }

 private:
  struct Entry {
    std::u16string name;
    std::u16string flag;  // as written; only "1" lets the element overlap
  };
  static constexpr std::size_t kSlots = 512;
  static constexpr std::int16_t kEmpty = kNotListed;

  std::vector<Entry> entries_;
  std::vector<std::string> names_;
  std::vector<std::uint64_t> hashes_;
  std::array<std::int16_t, kSlots> slots_{};
};

}  // namespace kavo
