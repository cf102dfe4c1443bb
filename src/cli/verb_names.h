// What the first words of a command line mean: options may stand before the verb, "help" stands for the option of that
// name, and an unknown verb gets the nearest known one as advice.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace kavo {

// The arguments in the order that the parser wants: the verb, then everything else. `app` knows all verbs and groups.
// Throws CLI::ParseError for a verb that is not known.
std::vector<std::string> with_verb_first(const CLI::App& app, std::vector<std::string> arguments);

}  // namespace kavo
