// The desktop while a form is shown in the terminal: file dialogs are asked there, too.
#pragma once

#include <ostream>
#include <string_view>

#include "platform/desktop.h"
#include "ui/terminal/terminal_input.h"

namespace kavo {

class TerminalDesktop final : public Desktop {
 public:
  TerminalDesktop(Desktop& other, TerminalInput& input, std::ostream& output)
      : other_(other), input_(input), output_(output) {}

  void process_messages() override { other_.process_messages(); }
  std::optional<std::u16string> foreground_caption() override { return other_.foreground_caption(); }
  void activate(std::u16string_view caption) override { other_.activate(caption); }
  std::uintptr_t find_window(std::u16string_view class_name) override { return other_.find_window(class_name); }
  void post_message(std::uintptr_t window, std::uint32_t message) override { other_.post_message(window, message); }
  void message_box(std::u16string_view text, std::u16string_view caption, MessageIcon icon) override {
    other_.message_box(text, caption, icon);
  }
  // Asks for the name of a file until it can be used; an empty line cancels.
  std::optional<std::u16string> ask_file(const FileQuestion& question) override;

 private:
  Desktop& other_;
  TerminalInput& input_;
  std::ostream& output_;
};

// The full path, in the core's form, of a path as people write it on this system. Throws `failure` for an impossible
// one.
std::u16string path_from_terminal(std::string_view line);

}  // namespace kavo
