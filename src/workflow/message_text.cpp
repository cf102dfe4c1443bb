#include "workflow/message_text.h"

#include "common/clsCommon.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr TextRow kFileNotOpened = text::kLess;  // of clsASP2HTML, which says why

}  // namespace

// The message about a file that could not be opened begins with a text that hosts recognise, but people would not
// understand. It is left out here, because the system's reason follows, with the name of the file if that is another
// one.
std::string whole_message_text(const Message& message, const std::string& file) {
  const std::u16string_view prefix = kFileNotOpened.text;
  std::u16string_view text = message.text;
  std::string name;
  const std::size_t name_end = text.find(u"\r\n");
  if (message.number == kFileNotOpened.number && text.starts_with(prefix) && name_end != std::u16string_view::npos) {
    name = path_to_host(text.substr(prefix.size(), name_end - prefix.size()));
    name = name == file ? "" : name + ": ";
    text.remove_prefix(name_end + 2);
  }
  std::string line = to_utf8(clsCommon().SandR(text, u"\r\n", u": "));
  // The file's own name comes before the message anyway.
  if (const std::string own = name.empty() ? file + ": " : name; line.starts_with(own)) line.erase(0, own.size());
  return name + line;
}

std::string message_text(const Message& message, const std::string& file) {
  std::string text = whole_message_text(message, file);
  const std::string told = "Line " + std::to_string(message.line) + ", column " + std::to_string(message.column) + ": ";
  if (message.line > 0 && text.starts_with(told)) text.erase(0, told.size());
  return text;
}

}  // namespace kavo
