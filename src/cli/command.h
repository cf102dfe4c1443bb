// The `kavo` command: kavo VERB [options] FILE...
#pragma once

#include <string>
#include <vector>

namespace kavo {

// Runs the command with the arguments behind the program's name and returns its exit code: 0 done, 1 failed, 2 wrong
// usage, 3 a check found a difference, 130 interrupted.
int run_command(std::vector<std::string> arguments);

}  // namespace kavo
