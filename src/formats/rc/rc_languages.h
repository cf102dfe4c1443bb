// The languages of LANGUAGE statements: language identifiers of the Windows API, by number and by name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavo::rc {

// A primary language in the lower 10 bits, a sublanguage in the upper 6.
using LanguageId = std::uint16_t;

constexpr LanguageId primary_of(LanguageId id) { return id & 0x3FF; }
constexpr LanguageId sublanguage_of(LanguageId id) { return static_cast<LanguageId>(id >> 10); }

// A number as the compiler reads it: "12", "0x0C", "12L"; nothing for other words.
std::optional<std::uint32_t> number_of(std::string_view word);

// The language that the two values of a LANGUAGE statement name. Each is a number or a name ("LANG_FRENCH",
// "SUBLANG_FRENCH"). Nothing when either is something else, such as a macro of the script.
std::optional<LanguageId> language_of(std::string_view primary, std::string_view sublanguage);

// The two values for a language, with ", " between them; by name when compilers know both names.
std::string language_words(LanguageId id, bool by_name);

}  // namespace kavo::rc
