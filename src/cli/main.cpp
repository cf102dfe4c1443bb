#include <cstdio>
#include <exception>
#include <new>

#include "cli/command.h"
#include "cli/memory_reserve.h"
#include "cli/office_programs.h"
#include "cli/output.h"
#include "platform/automation.h"
#include "platform/console.h"
#include "platform/failure.h"
#include "suite/suite.h"

int main(int argc, char** argv) {
  try {
    kavo::prepare_console();
    kavo::interrupt_on_control_c();
    const kavo::AutomationSession session;
    kavo::register_suite_factories();
    const kavo::OfficePrograms office_programs;
    const kavo::ExitCode code = kavo::run_command(kavo::command_line(argc, argv));
    if (kavo::output_is_complete()) return static_cast<int>(code);
    std::fputs("kavo: standard output cannot be written\n", stderr);
  } catch (const kavo::failure& reason) {
    std::fprintf(stderr, "kavo: %s\n", reason.what());
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "kavo: %s\n", kavo::kNotEnoughMemory);
  } catch (const std::exception&) {
    std::fputs("kavo: internal error\n", stderr);
  }
  return static_cast<int>(kavo::ExitCode::kFailed);
}
