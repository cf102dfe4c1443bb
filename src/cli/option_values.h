// Checks of option values: a value without a meaning is wrong usage.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace kavo {

// For Option::transform: a code of the suite or a BCP 47 tag becomes the suite's code.
CLI::Validator language_value();
// The same for several, with commas between them.
CLI::Validator language_list_value();
std::vector<std::string> listed_languages(const std::string& list);
// For Option::check: a name or number that code_page_number() knows.
CLI::Validator code_page_value();
// The same, of all languages or with a language before it: "932", "JA=932".
CLI::Validator language_code_page_value();
// For Option::check: "key=value" with a filter option and one of its values.
CLI::Validator filter_option_value();

}  // namespace kavo
