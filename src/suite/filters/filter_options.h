// What people may choose for the filters: one row for each option. The command line, the project file, the stored
// settings and docs/filter-options.md all read this table, and a filter reads its options through it.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// What was chosen, by key. A key that is missing has its usual value.
using FilterOptions = std::map<std::string, std::string, std::less<>>;

enum class OptionKind : std::uint8_t {
  kSwitch,    // "on" or "off"
  kChoice,    // one of the row's words
  kNumber,    // decimal, 0 or more
  kText,      // any text on one line
  kWords,     // words with commas or blanks between
  kNames,     // names with commas between; a name may hold blanks
  kPatterns,  // texts with TABs between; a command line gives one at a time
};

struct FilterOption {
  std::string_view key;  // the filter, a dot, the option: "rc.dialog-font"; without a dot it belongs to one run only
  OptionKind kind;
  std::string_view usual;         // what holds when nobody chooses
  std::string_view summary;       // what it does
  std::string_view example;       // a value
  std::string_view choices = {};  // the words of a kChoice, with blanks between
};

// All options, by filter.
std::span<const FilterOption> filter_options();
// Null for an unknown key.
const FilterOption* find_filter_option(std::string_view key);
// Whether it can be stored for the user and stand in a project: it belongs to a filter, not to one run.
bool is_lasting(const FilterOption& option);
// What a value can be, for people: "likely, all or none".
std::string values_of(const FilterOption& option);

// What is wrong with a choice, for people: "" for nothing. An unknown key is named with the nearest one.
std::string option_problem(std::string_view key, std::string_view value);
// Notes a choice that option_problem() has nothing against. A list that was begun in the same options gets longer.
void choose(FilterOptions& options, std::string_view key, std::string_view value);

// What the user has stored (program "KAVO", section and name as in the key).
FilterOptions stored_filter_options();
// Throws `failure` when the registry refuses. An empty value takes what is stored away.
void store_filter_option(std::string_view key, std::string_view value);

// What holds for a key of the table, chosen or usual.
std::string_view option_text(const FilterOptions& options, std::string_view key);
bool is_on(const FilterOptions& options, std::string_view key);
// The words, names or patterns of a list, without empty ones.
std::vector<std::string> option_items(const FilterOptions& options, std::string_view key);

}  // namespace kavo
