#include "mif/entry_table.h"

#include <algorithm>
#include <functional>

namespace kavo {
namespace {

constexpr std::size_t kFirstSlots = 256;

std::size_t hash_of(std::size_t name_hash, std::string_view text) {
  const std::size_t text_hash = std::hash<std::string_view>{}(text);
  return name_hash ^ (text_hash + static_cast<std::size_t>(0x9E3779B97F4A7C15u) + (name_hash << 6) + (name_hash >> 2));
}

}  // namespace

template <class Matches>
std::size_t EntryTable::slot_of(const Index& index, std::size_t hash, Matches matches) {
  const std::size_t mask = index.size() - 1;
  std::size_t slot = hash & mask;
  while (index[slot] != kEmpty && !matches(static_cast<std::size_t>(index[slot]))) slot = (slot + 1) & mask;
  return slot;
}

std::size_t EntryTable::name_slot(std::size_t hash, std::string_view wanted, std::uint8_t wanted_coding) const {
  return slot_of(by_name_, hash, [&](std::size_t row) {
    return rows_[row].name_hash == hash && coding(row) == wanted_coding && name(row) == wanted;
  });
}

std::size_t EntryTable::entry_slot(std::size_t hash, std::string_view wanted, std::string_view wanted_text,
                                   std::uint8_t wanted_coding) const {
  return slot_of(by_entry_, hash, [&](std::size_t row) {
    return rows_[row].entry_hash == hash && coding(row) == wanted_coding && name(row) == wanted &&
           text(row) == wanted_text;
  });
}

EntryTable::Added EntryTable::add(std::string_view name, std::string_view text, std::uint8_t coding) {
  if (rows_.size() * 2 >= by_name_.size()) grow();
  const std::size_t name_hash = std::hash<std::string_view>{}(name);
  const std::size_t entry_hash = hash_of(name_hash, text);
  std::int32_t& named = by_name_[name_slot(name_hash, name, coding)];
  std::int32_t* entry = nullptr;
  if (same_ == Same::kNameAndText) {
    entry = &by_entry_[entry_slot(entry_hash, name, text, coding)];
    if (*entry != kEmpty) return Added::kKnown;
  } else if (named != kEmpty) {
    return Added::kKnown;
  }
  if (rows_.size() == kMostRows) return Added::kFull;
  const auto row = static_cast<std::int32_t>(rows_.size());
  if (named == kEmpty) named = row;
  if (entry != nullptr) *entry = row;
  rows_.push_back({bytes_.size(), static_cast<std::uint32_t>(name.size()), static_cast<std::uint32_t>(text.size()),
                   name_hash, entry_hash, coding});
  bytes_.append(name).append(text);
  return Added::kNew;
}

std::optional<std::string_view> EntryTable::find(std::string_view name) const {
  if (rows_.empty()) return std::nullopt;
  const std::int32_t row = by_name_[name_slot(std::hash<std::string_view>{}(name), name, 0)];
  if (row == kEmpty) return std::nullopt;
  return text(static_cast<std::size_t>(row));
}

void EntryTable::clear() {
  bytes_.clear();
  rows_.clear();
  by_name_.clear();
  by_entry_.clear();
}

void EntryTable::grow() {
  const std::size_t slots = std::max(kFirstSlots, by_name_.size() * 2);
  by_name_.assign(slots, kEmpty);
  if (same_ == Same::kNameAndText) by_entry_.assign(slots, kEmpty);
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    std::int32_t& named = by_name_[name_slot(rows_[row].name_hash, name(row), coding(row))];
    if (named == kEmpty) named = static_cast<std::int32_t>(row);
    if (same_ == Same::kNameAndText)
      by_entry_[entry_slot(rows_[row].entry_hash, name(row), text(row), coding(row))] = static_cast<std::int32_t>(row);
  }
}

}  // namespace kavo
