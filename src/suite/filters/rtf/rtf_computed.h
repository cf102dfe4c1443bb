// The places of an RTF document that the filter rewrites when the document is rebuilt.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formats/rtf/token_scanner.h"
#include "suite/languages/language_table.h"

namespace kavo::rtf {

enum ComputedKind : std::uint32_t {
  kFonts = 1,      // the content of the font table, without its braces and its control word
  kColours = 2,    // the content of the colour table; "" where the document has none
  kLanguage = 3,   // a control word that sets the language of text
  kDirection = 4,  // a control word that sets or resets the direction of paragraphs; "" where the document has none
};

// The row of a language code of the suite, or null.
const LanguageRow* language_row(std::string_view code);
bool is_right_to_left(const LanguageRow& language);

// True when a control word sets the language of text in the script of `language`: Western, East Asian or right-to-left.
bool tells_language(const Token& word, const LanguageRow& language);
bool tells_direction(const Token& word);
// Writes a computed place of kDirection.
void append_direction(std::string_view original, bool is_right_to_left, std::string& bytes);

// The locale identifier of a language, with its usual country when it names none; nothing for a language that Windows
// does not know.
std::optional<std::int32_t> locale_of(const LanguageRow& language);
// True for two locale identifiers of the same language, whatever the country.
bool are_of_one_language(std::int32_t first, std::int32_t second);

}  // namespace kavo::rtf
