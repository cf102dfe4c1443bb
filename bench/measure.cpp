// Runs commands in turn and prints a table: median time, throughput, ratio to the first, peak memory.
//
//   measure ROUNDS BYTES  NAME BEFORE COMMAND  [NAME BEFORE COMMAND ...]
//
// BEFORE is a shell command that puts the input in place and is not timed ("" for none). The commands run one after
// another in every round, so that other load on the machine affects all of them.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Entry {
  std::string name, before, command;
  std::vector<double> seconds;
  long peak_kib = 0;
  bool failed = false;
};

// Exit status of a shell command; its peak memory in KiB when asked for.
int run(const std::string& command, long* peak_kib = nullptr) {
  const pid_t child = fork();
  if (child == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDERR_FILENO);
    dup2(null, STDOUT_FILENO);
    const std::string line = "exec " + command;
    execl("/bin/sh", "sh", "-c", (peak_kib != nullptr ? line : command).c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (peak_kib != nullptr) *peak_kib = std::max(*peak_kib, usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 6 || (argc - 3) % 3 != 0) {
    std::fprintf(stderr, "usage: measure ROUNDS BYTES NAME BEFORE COMMAND [NAME BEFORE COMMAND ...]\n");
    return 2;
  }
  const int rounds = std::atoi(argv[1]);
  const double bytes = std::atof(argv[2]);
  std::vector<Entry> entries;
  for (int i = 3; i < argc; i += 3) entries.push_back({argv[i], argv[i + 1], argv[i + 2], {}, 0, false});

  for (int round = 0; round < rounds; ++round) {
    for (Entry& entry : entries) {
      if (!entry.before.empty() && run(entry.before) != 0) entry.failed = true;
      const auto start = std::chrono::steady_clock::now();
      const int status = run(entry.command, &entry.peak_kib);
      entry.seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
      // 1 is how checkers such as tidy say that they found something; 126 and up mean that nothing ran.
      if (status >= 126) entry.failed = true;
    }
  }

  std::printf("  %-34s %10s %10s %8s %10s\n", "command", "median ms", "MB/s", "ratio", "peak MB");
  for (const Entry& entry : entries) {
    const double time = median(entry.seconds);
    std::printf("  %-34s %10.1f %10.0f %8.2f %10.1f%s\n", entry.name.c_str(), time * 1e3, bytes / 1e6 / time,
                median(entries.front().seconds) / time, static_cast<double>(entry.peak_kib) / 1024,
                entry.failed ? "  (did not run)" : "");
  }
  return 0;
}
