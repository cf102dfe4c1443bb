// The table of settings, one row each: what is stored for the user and can be in a project.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// One stored option: its value as text, and how to store a new one. `write` returns false for a value that the option
// cannot have, and throws `failure` when it cannot be stored.
struct Setting {
  std::string name;
  std::string values;  // the possible values, for the help and for errors
  std::function<std::string()> read;
  std::function<bool(const std::string& value)> write;
  bool starts_program = false;   // its value is a program to run, so no project may set it
  char list_separator = 0;       // of a setting that can have several values
  bool shapes_documents = true;  // bilingual documents depend on it; false for what only colours or opens them
};

// All of them, in the order of the help.
const std::vector<Setting>& known_settings();
// Null for an unknown name; nearest_setting() says which one may be meant.
const Setting* find_setting(std::string_view name);
std::string nearest_setting(std::string_view name);
// Stores a value. Throws `failure` for one that the setting cannot have, or that cannot be stored.
void change_setting(const Setting& setting, const std::string& value);

}  // namespace kavo
