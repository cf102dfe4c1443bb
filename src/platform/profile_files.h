// Port: private profile (INI) files, with the meaning of GetPrivateProfileString and WritePrivateProfileString: names
// ignore case, a value in matching quotes loses them, blanks around names and values do not count.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

class ProfileFiles {
 public:
  virtual ~ProfileFiles() = default;
  // The value, or `fallback` when section, key or file is missing; never throws. At most `limit` characters.
  virtual std::u16string read(std::u16string_view section, std::u16string_view key, std::u16string_view fallback,
                              std::u16string_view file, std::size_t limit) = 0;
  // False when the file cannot be written.
  virtual bool write(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                     std::u16string_view file) = 0;
};

}  // namespace kavo
