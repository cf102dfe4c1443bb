// Command lines as Windows programs read them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// The program and its arguments, by the rules of CommandLineToArgvW: the program's name ends at a blank, or when it
// begins with a quote at the next one; in arguments quotes keep blanks together, \" is a quote, backslashes before a
// quote count half, and "" within quotes is a quote. Empty for a line of blanks.
std::vector<std::u16string> split_command_line(std::u16string_view line);
// The same for arguments that no program stands before.
std::vector<std::u16string> split_arguments(std::u16string_view line);

}  // namespace kavo
