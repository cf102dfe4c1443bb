// The file and the reason behind the text of a message about MIF files.
#pragma once

#include <string>

#include "platform/failure.h"
#include "platform/formatted.h"
#include "resources/string_table.h"

namespace kavo {

inline std::u16string described(std::u16string_view path, const failure& reason) {
  return formatted(u"{} ({})", path, reason.description());
}

}  // namespace kavo
