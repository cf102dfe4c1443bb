// Forces many files onto the disk at once.
#pragma once

#include <exception>
#include <string>
#include <vector>

namespace kavo {

// Forces each file onto the disk (fsync(2)). Returns for each, in order, its failure or null. A failure is a `failure`
// or std::bad_alloc. Throws only when memory runs out before anything is done.
std::vector<std::exception_ptr> flush_together(const std::vector<std::string>& files);

}  // namespace kavo
