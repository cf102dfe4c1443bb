#include "formats/rc/rc_languages.h"

#include <charconv>

#include "platform/formatted.h"

namespace kavo::rc {
namespace {

struct LanguageName {
  bool is_sublanguage;
  std::string_view name;
  std::uint16_t number;
  bool is_written;
};
constexpr LanguageName kNames[] = {
#include "rc_language_names.inc"
};

constexpr std::string_view kPrimary = "LANG_";
constexpr std::string_view kSublanguage = "SUBLANG_";

std::optional<std::uint32_t> value_of(std::string_view word, bool is_sublanguage) {
  const std::string_view prefix = is_sublanguage ? kSublanguage : kPrimary;
  if (!word.starts_with(prefix)) return number_of(word);
  word.remove_prefix(prefix.size());
  for (const LanguageName& row : kNames)
    if (row.is_sublanguage == is_sublanguage && row.name == word) return row.number;
  return std::nullopt;
}

// "SERBIAN" and "BOSNIAN" have one number: the name of the sublanguage decides.
std::optional<std::string> names_of(LanguageId id) {
  for (const LanguageName& primary : kNames) {
    if (primary.is_sublanguage || !primary.is_written || primary.number != primary_of(id)) continue;
    for (const LanguageName& sub : kNames) {
      if (!sub.is_sublanguage || !sub.is_written || sub.number != sublanguage_of(id) ||
          !sub.name.starts_with(primary.name))
        continue;
      if (sub.name.size() != primary.name.size() && sub.name[primary.name.size()] != '_') continue;
      std::string words(kPrimary);
      words += formatted("{}, {}", primary.name, kSublanguage);
      return words += sub.name;
    }
  }
  if (sublanguage_of(id) != 1) return std::nullopt;
  for (const LanguageName& primary : kNames)
    if (!primary.is_sublanguage && primary.is_written && primary.number == primary_of(id))
      return std::string(kPrimary) + std::string(primary.name) + ", SUBLANG_DEFAULT";
  return std::nullopt;
}

}  // namespace

std::optional<std::uint32_t> number_of(std::string_view word) {
  const bool is_hexadecimal = word.starts_with("0x") || word.starts_with("0X");
  if (is_hexadecimal) word.remove_prefix(2);
  if (!word.empty() && (word.back() == 'L' || word.back() == 'l')) word.remove_suffix(1);
  std::uint32_t number = 0;
  const char* const end = word.data() + word.size();
  const auto [last, error] = std::from_chars(word.data(), end, number, is_hexadecimal ? 16 : 10);
  if (word.empty() || last != end || error != std::errc()) return std::nullopt;
  return number;
}

std::optional<LanguageId> language_of(std::string_view primary, std::string_view sublanguage) {
  const auto first = value_of(primary, false);
  const auto second = value_of(sublanguage, true);
  if (!first || !second || *first > 0x3FF || *second > 0x3F) return std::nullopt;
  return static_cast<LanguageId>(*second << 10 | *first);
}

std::string language_words(LanguageId id, bool by_name) {
  if (by_name)
    if (const auto names = names_of(id)) return *names;
  return std::to_string(primary_of(id)) + ", " + std::to_string(sublanguage_of(id));
}

}  // namespace kavo::rc
