// What is stored for the user and can stand in a project: one row for each setting.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// One stored option: its value as text, and how to store a new one. `write` answers false for a value that the option
// cannot have, and throws `failure` when it cannot be stored.
struct Setting {
  std::string name;
  std::string values;  // what it can be, for the help and for errors
  std::function<std::string()> read;
  std::function<bool(const std::string& value)> write;
  bool starts_program = false;  // what it holds is run: no project may choose it
  char list_separator = 0;      // of a setting that can have several values
  bool shapes_documents = true;  // bilingual documents depend on it; not what only colours or opens them
};

// All of them, in the order of the help.
const std::vector<Setting>& known_settings();
// Null for a name that is none; nearest_setting() tells which one may be meant.
const Setting* find_setting(std::string_view name);
std::string nearest_setting(std::string_view name);
// Stores a value. Throws `failure` for one that the setting cannot have, or that cannot be stored.
void change_setting(const Setting& setting, const std::string& value);

}  // namespace kavo
