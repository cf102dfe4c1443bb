// What people write for a language: the suite's code, a BCP 47 tag, or something near one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/languages/language_table.h"

namespace kavo {

// The language that a code of the suite or a BCP 47 tag means, in letters of any case: "FR", "de-AT", "zh-Hant-TW",
// "iw". A tag may name the script that the language has anyhow ("fr-Latn"), and leave it out where only one language of
// the table fits ("ha-NG", but not "sr-RS"). Nothing for all others. The row is the table's own.
const LanguageRow* find_language(std::u16string_view tag);

// Languages that may be meant by a text that names none, the likeliest first, at most three: by a name ("German",
// "Germn"), by a tag with another region or script ("fr-XX", "sr-RS"), by a region ("Austria", "JP").
std::vector<const LanguageRow*> nearest_languages(std::u16string_view text);

// Why find_language() finds nothing for the text, for people, without a full stop: "GERMAN is not a language that the
// suite knows; did you mean DE (German)?". A list of languages gets an answer of its own.
std::u16string unknown_language_text(std::u16string_view text);

}  // namespace kavo
