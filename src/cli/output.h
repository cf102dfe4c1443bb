// Standard output of the command.
#pragma once

#include <string_view>

namespace kavo {

// Writes the text at once. When nobody reads the output any more ("| head"), nothing is written. That is not an error,
// and the work on the files continues.
void print_output(std::string_view text);
// False when a text could not be written for any other reason.
bool output_is_complete();

}  // namespace kavo
