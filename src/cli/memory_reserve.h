// What the command does when memory runs out.
//
// A piece of memory is kept back from the start. When an allocation fails, the piece is given up, so that this one, and
// everything that has to be cleared away, still succeeds; the work on the file is ended at the next place where that is
// safe. Only a second failure, with nothing kept back any more, is thrown where it happens. So an exception comes out of
// no destructor and no start-up; should one do so all the same, the program says why it ends.
#pragma once

namespace kavo {

// Keeps memory back again, after a file that used it up; not when there is none.
void keep_memory_back() noexcept;
// Throws std::bad_alloc, once, when memory has run out since the last call.
void throw_if_memory_ran_out();
// Names the file that is worked on; "" for none. The text must live on.
void working_on(const char* file) noexcept;
// Tells on standard error that there was not enough memory for that file.
void tell_no_memory() noexcept;

}  // namespace kavo
