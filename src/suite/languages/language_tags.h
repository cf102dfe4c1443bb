// Finds the language that people mean by a code of the suite, a BCP 47 tag or something near one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/languages/language_table.h"

namespace kavo {

// The language of a suite code or a BCP 47 tag, in capital or small letters: "FR", "de-AT", "zh-Hant-TW", "iw". A tag
// may name the script that the language usually has ("fr-Latn"), and may omit it when only one language of the table
// matches ("ha-NG", but not "sr-RS"). Null for any other text. The row belongs to the table.
const LanguageRow* find_language(std::u16string_view tag);

// For a text that is not the exact name of a language: the languages that it may mean, the likeliest first, at most
// three. By a name ("German", "Germn"), by a tag with another region or script ("fr-XX", "sr-RS"), by a region
// ("Austria", "JP").
std::vector<const LanguageRow*> nearest_languages(std::u16string_view text);

// A message for people, without a full stop, that says why find_language() finds nothing: "GERMAN is not a language
// that the suite knows; did you mean DE (German)?". For a list of languages the message is a different one.
std::u16string unknown_language_text(std::u16string_view text);

}  // namespace kavo
