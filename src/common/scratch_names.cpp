#include "common/scratch_names.h"

#include <cstdint>

#include "platform/formatted.h"
#include "platform/ports.h"

namespace kavo {

std::u16string scratch_name_beside(std::u16string_view path) {
  constexpr std::u16string_view digits = u"0123456789abcdef";
  std::uint64_t random = ports().clock->seed();
  std::u16string name = formatted(u"{}.kavo-", path);
  for (int i = 0; i < 12; ++i, random >>= 4) name += digits[random & 15];
  return name;
}

std::u16string new_name_of(std::u16string_view path, int number) {
  return number > 1 ? formatted(u"{}.kavo-new{}", path, number) : formatted(u"{}.kavo-new", path);
}

}  // namespace kavo
