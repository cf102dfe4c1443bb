#include "formats/mif/building_block.h"

namespace kavo::mif {
namespace {

// Names of variables and character formats are far shorter.
constexpr std::size_t kLongest = 256;  // bytes

}  // namespace

std::size_t building_block_length(std::string_view value) {
  if (!value.starts_with('<')) return 0;
  value = value.substr(0, kLongest);
  const std::size_t end = value.find_first_of("<>'\r\n", 1);
  if (end == std::string_view::npos || value[end] != '>') return 0;
  std::string_view inside = value.substr(1, end - 1);
  if (inside.ends_with('\\')) inside.remove_suffix(1);
  if (inside.empty()) return 0;
  // A counter that shows nothing begins with a blank. A name never does.
  if (inside.front() == ' ' && inside.size() > 1 && inside[1] != '=' && inside[1] != '+') return 0;
  return end + 1;
}

}  // namespace kavo::mif
