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
  sigaction(SIGINT, &action, nullptr);
}

}  // namespace kavo
