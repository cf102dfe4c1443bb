// What the command's own folders in the temporary folder are called: "kavo-" and eight hexadecimal digits.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo {

inline constexpr std::u16string_view kWorkFolderStart = u"kavo-";
inline constexpr std::size_t kWorkFolderDigits = 8;

constexpr bool is_work_folder_name(std::u16string_view name) {
  return name.size() == kWorkFolderStart.size() + kWorkFolderDigits && name.starts_with(kWorkFolderStart) &&
         name.find_first_not_of(u"0123456789abcdef", kWorkFolderStart.size()) == std::u16string_view::npos;
}

}  // namespace kavo
