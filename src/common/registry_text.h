// Registry values as text and back. The registry stores a string as UTF-16LE with a terminating zero (REG_SZ), and a
// list as one string after the other with an empty one after the last (REG_MULTI_SZ).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace kavo {

// The text of a string value without its terminating zeros (other programs store some without, some with several).
std::u16string registry_text(const RegistryData& data);
std::vector<std::u16string> registry_text_list(const RegistryData& data);

RegistryData registry_string(std::u16string_view text, RegistryType type = RegistryType::kString);
RegistryData registry_string_list(const std::vector<std::u16string>& texts);

}  // namespace kavo
