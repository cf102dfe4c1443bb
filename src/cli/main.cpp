#include <cstdio>
#include <exception>

#include "cli/command.h"
#include "cli/office_programs.h"
#include "platform/automation.h"
#include "platform/console.h"
#include "suite/suite.h"

int main(int argc, char** argv) {
  try {
    kavo::prepare_console();
    kavo::interrupt_on_control_c();
    const kavo::AutomationSession session;
    kavo::register_suite_factories();
    const kavo::OfficePrograms office_programs;
    const int code = kavo::run_command(kavo::command_line(argc, argv));
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
    std::fputs("kavo: standard output cannot be written\n", stderr);
  } catch (const std::exception& reason) {
    std::fprintf(stderr, "kavo: %s\n", reason.what());
  }
  return 1;
}
