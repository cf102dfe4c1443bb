// Port: the console of a command line program. Free functions, since only the command uses them and no test replaces
// them.
#pragma once

#include <string>
#include <vector>

namespace kavo {

// The arguments after the program's name, in UTF-8 whatever the system's own encoding is.
std::vector<std::string> command_line(int argc, char** argv);

// Standard output and error take UTF-8 with line ends as written.
void prepare_console();

// True when standard error is a terminal that a person sees.
bool error_output_is_terminal();
// Its width in columns, 80 when unknown.
int error_output_width();

// From now on Ctrl+C asks for an interruption (request_interrupt) instead of ending the program. Natively SIGTERM and
// SIGHUP do the same, and writing to a pipe that nobody reads, or beyond the limit on a file's size, becomes a write
// that fails instead of a signal that ends the program.
void interrupt_on_control_c();

}  // namespace kavo
