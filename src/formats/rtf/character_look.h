// How RTF text looks: the character properties of RTF 1.9 that a reader sees. Properties that only programs see
// (languages, revision numbers, spelling marks) are left out, and so are those that nobody would call formatting
// (kerning, spread).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formats/rtf/token_scanner.h"

namespace kavo::rtf {

enum class Property : std::uint8_t {
  kFont,  // number; the font table knows which numbers look alike
  kSize,  // half points
  kBold,
  kItalic,
  kUnderline,
  kUnderlineColour,
  kStrike,
  kDoubleStrike,
  kScript,  // superscript, subscript
  kRaised,  // half points, negative: lowered
  kCapitals,
  kSmallCapitals,
  kOutline,
  kShadow,
  kEmboss,
  kEngrave,
  kAccent,
  kColour,
  kBackground,
  kShading,
  kHighlight,
  kAnimation,
  kStyle,  // of characters
  kHidden,
  kDeleted,  // by a tracked change
  kCount,
};
inline constexpr std::size_t kPropertyCount = static_cast<std::size_t>(Property::kCount);

class Look {
 public:
  std::int32_t get(Property property) const { return values_[static_cast<std::size_t>(property)]; }
  void set(Property property, std::int32_t value) { values_[static_cast<std::size_t>(property)] = value; }

  // \plain: resets every property, in this font.
  void reset(std::int32_t font);
  // Applies a control word. False when it does not set a character property.
  bool apply(const Token& word);
  bool operator==(const Look&) const = default;

 private:
  std::array<std::int32_t, kPropertyCount> values_ = initial();
  static constexpr std::array<std::int32_t, kPropertyCount> initial() {
    std::array<std::int32_t, kPropertyCount> values{};
    values[static_cast<std::size_t>(Property::kSize)] = 24;
    return values;
  }
};

// Appends the control words that change `from` into `to`, without a blank after them. No control word ends a character
// style, so a style is only ever set.
void append_change(const Look& from, const Look& to, std::string& words);

}  // namespace kavo::rtf
