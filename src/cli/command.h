// The `kavo` command: kavo VERB [options] FILE...
#pragma once

#include <string>
#include <vector>

#include "cli/exit_code.h"

namespace kavo {

// Runs the command with the arguments after the program's name and returns its exit code.
ExitCode run_command(std::vector<std::string> arguments);

}  // namespace kavo
