// The MIF options as a command line writes them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kavo {

// The values of SplitOptions by name.
const std::map<std::string, std::int16_t>& split_option_names();
// The name of a value, or its decimal text.
std::string split_option_name(std::int16_t value);

// Converts "Index, Heading" to what the Markers property takes, every name followed by a TAB, and back.
std::u16string marker_list_of(std::string_view names);
std::string marker_names_of(std::u16string_view list);

}  // namespace kavo
