#include "suite/filters/rtf/rtf_computed.h"

#include <algorithm>
#include <array>

#include "platform/unicode.h"

namespace kavo::rtf {
namespace {

constexpr std::int32_t kPrimaryLanguage = 0x3FF;  // the bits of a locale identifier that hold the language

// Columns: Western text, East Asian text, right-to-left text.
constexpr std::array<std::string_view, 3> kWestern = {"lang", "langnp", "deflang"};
constexpr std::array<std::string_view, 3> kEastAsian = {"langfe", "langfenp", "deflangfe"};
constexpr std::array<std::string_view, 2> kComplex = {"alang", "adeflang"};

bool is_east_asian(const LanguageRow& language) {
  constexpr std::u16string_view scripts[] = {u"Jpan", u"Kore", u"Hans", u"Hant", u"Hang"};
  return std::ranges::find(scripts, language.script) != std::end(scripts);
}

}  // namespace

const LanguageRow* language_row(std::string_view code) {
  const std::u16string wanted = to_utf16(code);
  const auto rows = language_rows();
  const auto found = std::ranges::find(rows, std::u16string_view(wanted), &LanguageRow::code);
  return found == rows.end() ? nullptr : &*found;
}

bool is_right_to_left(const LanguageRow& language) {
  constexpr std::u16string_view scripts[] = {u"Arab", u"Hebr", u"Syrc", u"Thaa", u"Nkoo", u"Adlm"};
  return std::ranges::find(scripts, language.script) != std::end(scripts);
}

bool tells_language(const Token& word, const LanguageRow& language) {
  if (!word.has_number) return false;
  const auto is_one_of = [&](const auto& names) { return std::ranges::find(names, word.name) != names.end(); };
  if (is_one_of(kWestern)) return true;
  return (is_east_asian(language) && is_one_of(kEastAsian)) || (is_right_to_left(language) && is_one_of(kComplex));
}

bool tells_direction(const Token& word) {
  constexpr std::string_view words[] = {"pard", "ltrpar", "ltrrow", "ltrsect"};
  return std::ranges::find(words, word.name) != std::end(words);
}

void append_direction(std::string_view original, bool is_right_to_left, std::string& bytes) {
  if (!is_right_to_left) {
    bytes += original;
    return;
  }
  if (original.empty()) {
    bytes += "\\rtlpar ";
    return;
  }
  const Token word = word_at(original);
  if (word.name.starts_with("ltr"))
    bytes.append("\\rtl").append(word.name.substr(3));
  else
    bytes.append("\\").append(word.name).append("\\rtlpar");
  if (original.ends_with(' ')) bytes += ' ';
}

std::optional<std::int32_t> locale_of(const LanguageRow& language) {
  constexpr std::int32_t none = 0x1000;
  constexpr std::int32_t usual_country = 0x400;
  if (language.lcid == none) return std::nullopt;
  if ((language.lcid & ~kPrimaryLanguage) != 0 && (language.lcid & 0x7C00) != 0x7C00) return language.lcid;
  // Scripts of Chinese are distinguished by country.
  if (language.script == u"Hans") return 0x0804;
  if (language.script == u"Hant") return 0x0404;
  return (language.lcid & kPrimaryLanguage) | usual_country;
}

bool are_of_one_language(std::int32_t first, std::int32_t second) {
  return (first & kPrimaryLanguage) == (second & kPrimaryLanguage);
}

}  // namespace kavo::rtf
