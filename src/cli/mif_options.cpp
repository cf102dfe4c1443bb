#include "cli/mif_options.h"

#include <algorithm>

#include "platform/formatted.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"

namespace kavo {

const std::map<std::string, std::int16_t>& split_option_names() {
  static const std::map<std::string, std::int16_t> names{{"none", 0}, {"semicolon", 1}, {"both", 2}};
  return names;
}

std::string split_option_name(std::int16_t value) {
  for (const auto& [name, number] : split_option_names())
    if (number == value) return name;
  return std::to_string(value);
}

std::u16string marker_list_of(std::string_view names) {
  std::u16string list;
  while (!names.empty()) {
    const std::size_t comma = std::min(names.find(','), names.size());
    const std::string_view name = trimmed(names.substr(0, comma), " ");
    if (!name.empty()) list += formatted(u"{}\t", name);
    names.remove_prefix(std::min(comma + 1, names.size()));
  }
  return list;
}

std::string marker_names_of(std::u16string_view list) {
  std::string names = to_utf8(list);
  if (names.ends_with('\t')) names.pop_back();
  for (char& c : names)
    if (c == '\t') c = ',';
  return names;
}

}  // namespace kavo
