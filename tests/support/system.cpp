#include "support/system.h"

#include <string>

#include "platform/files.h"

namespace kavo::test {

std::filesystem::path to_filesystem_path(std::u16string_view path) {
  if constexpr (is_native())
    return path_to_host(path);
  else
    return std::filesystem::path(std::u16string(path));
}

}  // namespace kavo::test
