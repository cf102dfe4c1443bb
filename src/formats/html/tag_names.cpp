#include "formats/html/tag_names.h"

namespace kavo {
namespace {

struct Row {
  Tag tag;
  std::string_view name;
  std::uint16_t traits;
};

// In the order of Tag.
constexpr Row kRows[] = {
    {Tag::kOther, "", 0},
#define KAVO_ELEMENT(tag, name, traits, kind, type) {Tag::tag, name, traits},
#define KAVO_UNNAMED_ELEMENT(name, traits, kind, type)
#include "formats/html/elements.inc"
#undef KAVO_ELEMENT
#undef KAVO_UNNAMED_ELEMENT
};

constexpr std::size_t kSlots = 512;
constexpr std::size_t slot_of(std::uint64_t hash) { return static_cast<std::size_t>((hash ^ (hash >> 23)) % kSlots); }

struct Slot {
  std::uint64_t hash = 0;
  Tag tag = Tag::kOther;
};

// Open addressing with empty slots of tag kOther.
constexpr auto kIndex = [] {
  std::array<Slot, kSlots> slots{};
  for (std::size_t i = 1; i < std::size(kRows); ++i) {
    const std::uint64_t hash = name_hash(kRows[i].name);
    std::size_t slot = slot_of(hash);
    while (slots[slot].tag != Tag::kOther) slot = (slot + 1) % kSlots;
    slots[slot] = {hash, kRows[i].tag};
  }
  return slots;
}();

}  // namespace

constexpr std::array<std::uint16_t, static_cast<std::size_t>(Tag::kCount)> kTagTraits = [] {
  std::array<std::uint16_t, static_cast<std::size_t>(Tag::kCount)> traits{};
  for (std::size_t i = 0; i < traits.size(); ++i) traits[i] = kRows[i].traits;
  return traits;
}();

std::string_view name_of(Tag tag) noexcept { return kRows[static_cast<std::size_t>(tag)].name; }

Tag tag_of(std::uint64_t hash) noexcept {
  for (std::size_t slot = slot_of(hash);; slot = (slot + 1) % kSlots)
    if (kIndex[slot].tag == Tag::kOther || kIndex[slot].hash == hash) return kIndex[slot].tag;
}

}  // namespace kavo
