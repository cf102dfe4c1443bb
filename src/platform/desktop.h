// Port: windows and messages of the desktop. The native adapter has no desktop: there are no captions and no windows,
// message boxes go to standard error, and file dialogs count as cancelled.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavo {

enum class MessageIcon { kNone, kExclamation, kInformation };

// What a file dialog asks for. `filter` holds pairs of a description and its wildcards, each ended by "|", the whole
// ended by one more: "Text files|*.txt;*.scr||".
struct FileQuestion {
  bool operator==(const FileQuestion&) const = default;

  bool to_save = false;  // true: a name to write to, confirmed by the user if it exists; false: an existing file
  std::u16string title;  // "" for the system's own
  std::u16string filter;
  std::u16string folder;     // shown first; "" for the system's choice
  std::u16string extension;  // without dot, added to a name that is typed without one; "" adds nothing
};

class Desktop {
 public:
  virtual ~Desktop() = default;
  // Lets the host handle its pending window messages; throws `interruption` when the user asked to interrupt.
  virtual void process_messages() = 0;
  // Caption of the foreground window, at most 1023 characters; nothing when there is no foreground window.
  virtual std::optional<std::u16string> foreground_caption() = 0;
  // Silently does nothing when no such window exists. `caption` is not empty: many windows have none, and any of them
  // would be found.
  virtual void activate(std::u16string_view caption) = 0;
  virtual std::uintptr_t find_window(std::u16string_view class_name) = 0;       // 0 when there is none
  virtual void post_message(std::uintptr_t window, std::uint32_t message) = 0;  // both parameters 0
  // A box with an OK button; returns when it was closed.
  virtual void message_box(std::u16string_view text, std::u16string_view caption, MessageIcon icon) = 0;
  // Shows the system's open or save dialog. The chosen path; nothing when the user cancelled or there is no screen.
  virtual std::optional<std::u16string> ask_file(const FileQuestion& question) = 0;
};

// The user's request to stop: one flag for the whole process. Both functions are safe in a signal handler. The next
// process_messages() of any thread clears the flag and throws, so that one request ends one operation.
void request_interrupt() noexcept;
bool interrupt_requested() noexcept;
// Clears the flag and throws `interruption` if it was set. For adapters.
void throw_if_interrupted();

}  // namespace kavo
