#include "platform/console.h"

#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/desktop.h"

namespace kavo {

std::vector<std::string> command_line(int argc, char** argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void prepare_console() {}

bool error_output_is_terminal() { return isatty(STDERR_FILENO) == 1; }

int error_output_width() {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : 80;
}

void interrupt_on_control_c() {
  struct sigaction action {};
  action.sa_handler = [](int) { request_interrupt(); };
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  // A closed terminal and `kill` are requests to stop, too.
  for (const int number : {SIGINT, SIGTERM}) sigaction(number, &action, nullptr);
  struct sigaction hangup {};
  const bool hangup_counts =
      sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler != SIG_IGN;  // not under nohup
  if (hangup_counts) sigaction(SIGHUP, &action, nullptr);
  // With a handler in place, a write to a closed pipe fails with EPIPE, and one beyond the limit on a file's size with
  // EFBIG. Ignoring the signals would do the same here, but programs that we start would inherit that.
  action.sa_handler = [](int) {};
  for (const int number : {SIGPIPE, SIGXFSZ}) sigaction(number, &action, nullptr);
}

}  // namespace kavo
