// The error list of a converter: what went wrong or was repaired, in order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kavo {

struct Message {
  std::u16string text;
  std::int32_t number = 0;  // string table number, 0 for a text of its own
  std::int64_t line = 0;    // 1-based place in the document, 0 when the message has none
  std::int64_t column = 0;  // 1-based, in bytes
};

using MessageList = std::vector<Message>;

}  // namespace kavo
