// The element names for which the tree construction of the HTML standard has rules of their own (elements.inc).
//
// A name is known by the 64-bit hash of its lower-case bytes, so that scanning a tag allocates nothing. Names without a
// rule differ by their hash alone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/fnv_hash.h"

namespace kavo {

enum class Tag : std::uint8_t {
  kOther,  // a name without a row
#define KAVO_ELEMENT(tag, name, traits, kind, type) tag,
#define KAVO_UNNAMED_ELEMENT(name, traits, kind, type)
#include "formats/html/elements.inc"
#undef KAVO_ELEMENT
#undef KAVO_UNNAMED_ELEMENT
  kCount
};

// What the standard says about elements of a name (in the HTML namespace).
enum TagTrait : std::uint16_t {
  kSpecial = 1,         // of the category "special"
  kFormatting = 2,      // of the category "formatting": reopened after the block that closed it
  kImpliedEnd = 4,      // "generate implied end tags" closes it
  kScopeBarrier = 8,    // ends every search "in scope"
  kTablePart = 16,      // table, tbody, tfoot, thead, tr: text directly inside is foster parented
  kBlockEnd = 32,       // its end tag closes the element when it is in scope, with all that is inside
  kLeavesForeign = 64,  // its start tag ends SVG and MathML content
  kVoid = 128,          // never has content
  kHeading = 256,       // h1 to h6: the end tag of one closes another
  kHeadContent = 512,   // belongs in the head wherever it is
  kTableChild = 1024,   // caption, col, colgroup, tbody, tfoot, thead, tr, td, th: has a place in tables only
  kRowGroup = 2048,     // tbody, tfoot, thead

  kOrdinaryBlock = kSpecial | kBlockEnd,
  kScopedSpecial = kSpecial | kScopeBarrier,
  kHeadingBlock = kSpecial | kLeavesForeign | kHeading,
  kTableGroup = kSpecial | kTablePart | kTableChild | kRowGroup,
};

extern const std::array<std::uint16_t, static_cast<std::size_t>(Tag::kCount)> kTagTraits;
inline std::uint16_t traits_of(Tag tag) noexcept { return kTagTraits[static_cast<std::size_t>(tag)]; }
// True when the element has any of `traits`.
inline bool has_trait(Tag tag, int traits) noexcept { return (traits_of(tag) & traits) != 0; }
// The name in lower case; "" for kOther.
std::string_view name_of(Tag tag) noexcept;

constexpr std::uint64_t kNameHashSeed = kFnvSeed;
constexpr std::uint64_t add_to_name_hash(std::uint64_t hash, char lower) noexcept {
  return fnv_add(hash, static_cast<unsigned char>(lower));
}
constexpr std::uint64_t name_hash(std::string_view lower) noexcept { return fnv_hash(lower); }
// kOther for a name without a row.
Tag tag_of(std::uint64_t name_hash) noexcept;

}  // namespace kavo
