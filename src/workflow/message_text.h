// A converter's message as people read it after the name of their file, on one line and in UTF-8.
#pragma once

#include <string>

#include "common/messages.h"

namespace kavo {

// The whole text. `file` is the name as the user wrote it; the message does not repeat it.
std::string whole_message_text(const Message& message, const std::string& file);

// The text without the place at its start, for callers that show `line` and `column` themselves.
std::string message_text(const Message& message, const std::string& file);

}  // namespace kavo
