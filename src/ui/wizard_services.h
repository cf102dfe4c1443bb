// What the wizard asks the program that shows it, because it does not know file types and filters.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace kavo {

// Codes are file type codes, 0 for a file of no known type. All must be set.
struct WizardServices {
  std::function<std::int32_t(std::u16string_view file_name)> file_type_of;
  // Whether the filter of a type has settings to show.
  std::function<bool(std::int32_t type)> has_filter_settings;
  // Shows them and notes that the filter was configured; without a filter it does nothing. Throws what the suite
  // raises.
  std::function<void(std::int32_t type)> show_filter_settings;
};

}  // namespace kavo
