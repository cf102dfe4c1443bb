// Command lines as Windows programs read them.
#pragma once

#include <span>
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
// The line that these rules split into these words again, for systems that start a program by a line. Throws `failure` 5
// for what no line can say: a program whose name holds a quote, and an argument with a quote, "%" or line end for a
// batch file, whose interpreter reads the line by rules of its own.
std::u16string joined_command_line(std::u16string_view program, std::span<const std::u16string> arguments);

}  // namespace kavo
