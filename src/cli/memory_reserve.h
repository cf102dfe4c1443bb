// What the command does when memory runs out.
//
// A piece of memory is reserved at the start. When an allocation fails, the piece is given up, so that this allocation
// and all cleaning up still succeed. Work on the file then ends at the next safe place. Only a second failure, when
// nothing is left of the reserve, throws where it happens. So destructors and the start-up do not throw. If one throws
// nevertheless, the program says why it ends.
#pragma once

namespace kavo {

// Reserves memory again after a file that used it up, if there is any.
void keep_memory_back() noexcept;
// Throws std::bad_alloc, once, when memory has run out since the last call.
void throw_if_memory_ran_out();
// Records which file is being worked on; "" for none.
void working_on(const char* file) noexcept;
// Reports on standard error that there was not enough memory for that file.
void tell_no_memory() noexcept;

}  // namespace kavo
