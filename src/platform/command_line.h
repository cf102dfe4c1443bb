// Command lines as Windows programs read them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// The program and its arguments, by the rules of CommandLineToArgvW. The program's name ends at a blank or, if it
// begins with a quote, at the next quote. In arguments, quotes keep blanks together, \" is a quote, backslashes before
// a quote count half, and "" within quotes is a quote. Empty for a line of blanks.
std::vector<std::u16string> split_command_line(std::u16string_view line);
// The same for a line that holds arguments only.
std::vector<std::u16string> split_arguments(std::u16string_view line);
// The line that split_command_line() takes apart into the same words, for systems that start a program from one line.
// Throws `failure` 5 for what no line can express: a program whose name contains a quote, and an argument of a batch
// file that contains a quote, "%" or a line end, because the command interpreter reads the line by rules of its own.
std::u16string joined_command_line(std::u16string_view program, std::span<const std::u16string> arguments);

}  // namespace kavo
