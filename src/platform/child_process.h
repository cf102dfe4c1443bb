// Starts this program a second time to do a share of the work. The child gets a text and answers with lines.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// One thread may read while another one writes or stops it.
class ChildProcess {
 public:
  // Ends the process if it still runs, and waits for that.
  virtual ~ChildProcess() = default;
  // Writes to its standard input. Does nothing when the process has already ended. Throws `failure` for any other
  // error.
  virtual void write_input(std::string_view text) = 0;
  // Waits for its next line of standard output, without the end of the line. False when there is no further one.
  virtual bool read_line(std::string& line) = 0;
  // Asks it to stop, as Ctrl+C does (SIGINT). On Windows, where a process without a console of its own cannot be asked,
  // ends it; the next run in its folder cleans up.
  virtual void interrupt() noexcept = 0;
  // Ends it at once (SIGKILL, TerminateProcess).
  virtual void end() noexcept = 0;
  // Waits for its end: its exit code, or -1 when something else ended it.
  virtual int wait() noexcept = 0;
};

// Starts the running program with these arguments; its standard error output is ours. The calling thread must live as
// long as the child (see end_with_parent). Throws `failure` when it cannot be started (posix_spawn, CreateProcess).
std::unique_ptr<ChildProcess> start_this_program(const std::vector<std::string>& arguments);

// For a child: it will be asked to stop when the thread that started it ends, for whatever reason (PR_SET_PDEATHSIG; on
// Windows the job object of start_this_program() ends it with the process). If the parent ended before this call, the
// child finds its standard input at the end.
void end_with_parent() noexcept;

}  // namespace kavo
