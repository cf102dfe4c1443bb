// Names of scratch files in the user's temporary folder. A name is not reserved: the file is not created, so callers
// create it exclusively and ask again when that fails.
#pragma once

#include <random>
#include <string>

namespace kavo {

class clsGetTempFileName {
 public:
  // Finds the temporary folder and seeds the generator from the system's random source.
  clsGetTempFileName();
  // A new name, full path: MOR, four hexadecimal digits, .TMP. After 1000 taken names MOR0000.TMP, taken or not.
  std::u16string Filename();

 private:
  std::u16string folder_;  // ends in "\"
  std::mt19937_64 random_;
};

}  // namespace kavo
