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

// What was chosen, by key. A key that is missing has its default.
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
  std::string_view usual;         // the default
  std::string_view summary;       // what it does
  std::string_view example;       // a value
  std::string_view choices = {};  // the words of a kChoice, with blanks between
};

// All options, by filter.
std::span<const FilterOption> filter_options();
// Null for an unknown key.
const FilterOption* find_filter_option(std::string_view key);
// True when it can be stored for the user and in a project, because it belongs to a filter and not to one run.
bool is_lasting(const FilterOption& option);
// What a value can be, for people: "likely, all or none".
std::string values_of(const FilterOption& option);

// What is wrong with a choice, as a message for people; "" when nothing is. For an unknown key the message suggests the
// nearest one.
std::string option_problem(std::string_view key, std::string_view value);
// Stores a choice that option_problem() accepts. A list that `options` already holds gets longer.
void choose(FilterOptions& options, std::string_view key, std::string_view value);

// What the user has stored (program "KAVO", section and name as in the key).
FilterOptions stored_filter_options();
// Throws `failure` when the registry refuses. An empty value deletes what is stored.
void store_filter_option(std::string_view key, std::string_view value);

// The value of a key of the table: what was chosen, or the default.
std::string_view option_text(const FilterOptions& options, std::string_view key);
bool is_on(const FilterOptions& options, std::string_view key);
// The words, names or patterns of a list, without empty ones.
std::vector<std::string> option_items(const FilterOptions& options, std::string_view key);

}  // namespace kavo
