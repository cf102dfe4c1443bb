#include "ui/terminal/terminal_input.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/desktop.h"

namespace kavo {

std::optional<std::string> TerminalInput::line() {
  std::size_t end;
  while ((end = read_.find('\n')) == std::string::npos && !ended_) {
    // read() would continue to wait after a signal. poll() returns, but not for a signal that arrived just before the
    // call, so it also returns at intervals.
    constexpr int kLookAgain = 200;  // milliseconds
    pollfd waiting{descriptor_, POLLIN, 0};
    const int ready = ::poll(&waiting, 1, kLookAgain);
    throw_if_interrupted();
    if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
    std::array<char, 4096> block;
    const ssize_t count = ready < 0 ? -1 : ::read(descriptor_, block.data(), block.size());
    if (count > 0)
      read_.append(block.data(), static_cast<std::size_t>(count));
    else if (count == 0 || errno != EINTR)
      ended_ = true;
  }
  if (end == std::string::npos && read_.empty()) return std::nullopt;
  std::string text = read_.substr(0, end);
  read_.erase(0, end == std::string::npos ? end : end + 1);
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace kavo
