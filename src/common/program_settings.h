// Per-user program settings: application, section, key, text. They lie where VBA's GetSetting looks for them
// (HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>), so that macros read them too.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

std::u16string get_setting(std::u16string_view application, std::u16string_view section, std::u16string_view key,
                           std::u16string_view default_value);
// Throws `failure` when the registry refuses.
void save_setting(std::u16string_view application, std::u16string_view section, std::u16string_view key,
                  std::u16string_view value);

}  // namespace kavo
