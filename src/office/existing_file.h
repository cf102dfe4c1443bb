#pragma once

#include <string_view>

#include "common/clsCommon.h"

namespace kavo {

// False for "", too, for which the search would find every file of the folder.
inline bool is_existing_file(std::u16string_view path) { return !path.empty() && clsCommon().FileExists(path); }

}  // namespace kavo
