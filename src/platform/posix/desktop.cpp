#include "platform/desktop.h"

#include <iostream>

#include "platform/adapters.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

class PosixDesktop final : public Desktop {
 public:
  void process_messages() override { throw_if_interrupted(); }
  std::optional<std::u16string> foreground_caption() override { return std::nullopt; }
  void activate(std::u16string_view) override {}
  std::uintptr_t find_window(std::u16string_view) override { return 0; }
  void post_message(std::uintptr_t, std::uint32_t) override {}
  void message_box(std::u16string_view text, std::u16string_view caption, MessageIcon) override {
    // This is one write, so that messages of several threads do not mix.
    std::cerr << to_utf8(caption) + ": " + to_utf8(text) + "\n" << std::flush;
  }
  std::optional<std::u16string> ask_file(const FileQuestion&) override { return std::nullopt; }
};

}  // namespace

Desktop& system_desktop() {
  static PosixDesktop desktop;
  return desktop;
}

}  // namespace kavo
