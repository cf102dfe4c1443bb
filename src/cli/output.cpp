#include "cli/output.h"

#include <cerrno>
#include <cstdio>

namespace kavo {
namespace {

bool has_reader = true;
bool is_complete = true;

}  // namespace

void print_output(std::string_view text) {
  if (!has_reader) return;
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
  if (errno == EPIPE)
    has_reader = false;
  else
    is_complete = false;
  // Otherwise writing the rest of the buffer would fail again.
  std::clearerr(stdout);
}

bool output_is_complete() { return is_complete; }

}  // namespace kavo
