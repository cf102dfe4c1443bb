// The whole command line as data: `kavo help --json`. Manual pages, completions and the reference in docs/ are made
// from it (scripts/make-command-docs.py), so they never differ from the help.
#pragma once

#include <CLI/App.hpp>
#include <nlohmann/json.hpp>

namespace kavo {

// {"summary", "version", "footer", "arguments", "options", "verbs"}. A verb has "name" ("html protect"), "summary",
// "examples", "arguments" and "options"; these have "names", "value" ("" for a flag), "choices", "help", "required" and
// "many". Verbs that the help does not list are left out.
nlohmann::ordered_json description_of(const CLI::App& app);

}  // namespace kavo
