#include "formats/rtf/character_look.h"

#include <algorithm>
#include <iterator>

namespace kavo::rtf {
namespace {

enum class Form : std::uint8_t {
  kSwitch,   // on, or off by a 0
  kNumber,   // a value of its own
  kLowered,  // a number below the line
  kChoice,   // one of several words for a property
  kOff,      // ends them
};

struct Row {
  std::string_view word;
  Property property;
  Form form;
  std::int32_t usual = 0;  // the number that counts when the word has none
};
using enum Property;
using enum Form;
// The first row of a property says how the property is written. A choice is recognised by the place of its row.
constexpr Row kRows[] = {
    {"accnone", kAccent, kOff},
    {"acccircle", kAccent, kChoice},
    {"acccomma", kAccent, kChoice},
    {"accdot", kAccent, kChoice},
    {"accunderdot", kAccent, kChoice},
    {"animtext", kAnimation, kNumber},
    {"b", kBold, kSwitch},
    {"caps", kCapitals, kSwitch},
    {"cb", kBackground, kNumber},
    {"cf", kColour, kNumber},
    {"chcbpat", kShading, kNumber},
    {"cs", kStyle, kNumber},
    {"deleted", kDeleted, kSwitch},
    {"dn", kRaised, kLowered, 6},
    {"embo", kEmboss, kSwitch},
    {"f", kFont, kNumber},
    {"fs", kSize, kNumber, 24},
    {"highlight", kHighlight, kNumber},
    {"i", kItalic, kSwitch},
    {"impr", kEngrave, kSwitch},
    {"nosupersub", kScript, kOff},
    {"outl", kOutline, kSwitch},
    {"scaps", kSmallCapitals, kSwitch},
    {"shad", kShadow, kSwitch},
    {"strike", kStrike, kSwitch},
    {"striked", kDoubleStrike, kNumber, 1},
    {"sub", kScript, kChoice},
    {"super", kScript, kChoice},
    {"ulnone", kUnderline, kOff},
    {"ul", kUnderline, kChoice},
    {"ulc", kUnderlineColour, kNumber},
    {"uld", kUnderline, kChoice},
    {"uldash", kUnderline, kChoice},
    {"uldashd", kUnderline, kChoice},
    {"uldashdd", kUnderline, kChoice},
    {"uldb", kUnderline, kChoice},
    {"ulhwave", kUnderline, kChoice},
    {"ulldash", kUnderline, kChoice},
    {"ulth", kUnderline, kChoice},
    {"ulthd", kUnderline, kChoice},
    {"ulthdash", kUnderline, kChoice},
    {"ulthdashd", kUnderline, kChoice},
    {"ulthdashdd", kUnderline, kChoice},
    {"ulthldash", kUnderline, kChoice},
    {"ululdbwave", kUnderline, kChoice},
    {"ulw", kUnderline, kChoice},
    {"ulwave", kUnderline, kChoice},
    {"up", kRaised, kNumber, 6},
    {"v", kHidden, kSwitch},
};

std::int32_t value_of(const Row& row, const Token& word) {
  const std::int32_t number = word.has_number ? word.number : row.usual;
  switch (row.form) {
    case kSwitch:
      return word.has_number && word.number == 0 ? 0 : 1;
    case kNumber:
      return number;
    case kLowered:
      return number < 0 ? number : -number;
    case kChoice:
      return word.has_number && word.number == 0 ? 0 : static_cast<std::int32_t>(&row - kRows) + 1;
    case kOff:
      break;
  }
  return 0;
}

void append_property(Property property, std::int32_t value, std::string& words) {
  const Row* row = std::ranges::find(kRows, property, &Row::property);
  if (row->form == kOff && value != 0) row = kRows + (value - 1);
  // \up comes after \dn in the table.
  if (property == kRaised && value >= 0) row = std::ranges::find(kRows, std::string_view("up"), &Row::word);
  words += '\\';
  words += row->word;
  if (row->form == kNumber)
    words += std::to_string(value);
  else if (row->form == kLowered)
    words += std::to_string(-static_cast<std::int64_t>(value));
  else if (row->form == kSwitch && value == 0)
    words += '0';
}

}  // namespace

void Look::reset(std::int32_t font) {
  values_ = initial();
  set(kFont, font);
}

bool Look::apply(const Token& word) {
  // No property has a longer name, but most control words do.
  if (word.name.size() > 10) return false;
  const auto* const row = std::ranges::find(kRows, word.name, &Row::word);
  if (row == std::end(kRows)) return false;
  set(row->property, value_of(*row, word));
  return true;
}

void append_change(const Look& from, const Look& to, std::string& words) {
  for (std::size_t i = 0; i < kPropertyCount; ++i) {
    const auto property = static_cast<Property>(i);
    const std::int32_t value = to.get(property);
    if (value == from.get(property)) continue;
    if (property == kStyle && value == 0) continue;
    append_property(property, value, words);
  }
}

}  // namespace kavo::rtf
