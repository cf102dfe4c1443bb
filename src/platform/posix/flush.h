// Many files onto the disk at once.
#pragma once

#include <exception>
#include <string>
#include <vector>

namespace kavo {

// Forces each file onto the disk (fsync(2)). The failure of each, in their order, or null: a `failure` or lack of
// memory. Throws only when memory runs out before anything is done.
std::vector<std::exception_ptr> flush_together(const std::vector<std::string>& files);

}  // namespace kavo
