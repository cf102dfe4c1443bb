// Finds the language that people mean by a code of the suite, a BCP 47 tag or something near one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/languages/language_table.h"

namespace kavo {

// The language of a suite code or a BCP 47 tag, in letters of any case: "FR", "de-AT", "zh-Hant-TW", "iw". A tag may
// name the script that the language has anyhow ("fr-Latn"), and may omit it where only one language of the table fits
// ("ha-NG", but not "sr-RS"). Null for any other text. The row belongs to the table.
const LanguageRow* find_language(std::u16string_view tag);

// The languages that a text may mean which names none exactly; the likeliest first, at most three. By a name ("German",
// "Germn"), by a tag with another region or script ("fr-XX", "sr-RS"), by a region ("Austria", "JP").
std::vector<const LanguageRow*> nearest_languages(std::u16string_view text);

// Says to people, without a full stop, why find_language() finds nothing: "GERMAN is not a language that the suite
// knows; did you mean DE (German)?". A list of languages gets an answer of its own.
std::u16string unknown_language_text(std::u16string_view text);

}  // namespace kavo
