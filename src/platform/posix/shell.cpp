// Programs are started without a shell in between, so that no character of a file name has a special meaning.
#include "platform/shell.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <vector>

#include "platform/adapters.h"
#include "platform/command_line.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/posix/host.h"
#include "platform/posix/paths.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// ShellExecute's results.
constexpr int kStarted = 42;
constexpr int kFileNotFound = 2;
constexpr int kAccessDenied = 5;
constexpr int kNoAssociation = 31;

// An existing file's path in the host's form; everything else (options, addresses) as it is.
std::string host_argument(const std::u16string& argument) {
  return system_files().info(argument) ? resolve(argument) : to_utf8(argument);
}

// Looks a program up in PATH and starts it; 0 or the errno value.
int spawn(std::vector<std::string> parts) {
  std::vector<char*> arguments;
  arguments.reserve(parts.size() + 1);
  for (std::string& part : parts) arguments.push_back(part.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const int error = ::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
  if (error != 0) return error;
  // Nobody waits for the program, but a child that has ended stays a zombie until it is collected.
  std::thread([child] { ::waitpid(child, nullptr, 0); }).detach();
  return 0;
}

class PosixShell final : public Shell {
 public:
  int open(std::u16string_view document) override {
    if (!system_files().info(document)) return kFileNotFound;
    return result_of(spawn({"xdg-open", resolve(system_files().absolute(document))}), kNoAssociation);
  }

  // This desktop looks at the content of a document, so the extension does not matter.
  int open_as(std::u16string_view document, std::u16string_view) override { return open(document); }

  int run(std::u16string_view program, std::u16string_view parameters) override {
    if (!system_files().info(program)) return kFileNotFound;
    std::vector<std::string> parts = {resolve(system_files().absolute(program))};
    for (const std::u16string& argument : split_arguments(parameters)) parts.push_back(host_argument(argument));
    return result_of(spawn(std::move(parts)), kFileNotFound);
  }

  void start(std::u16string_view program, const std::vector<std::u16string>& arguments) override {
    const bool is_path = program.find_first_of(u"\\/") != std::u16string_view::npos;
    std::vector<std::string> parts = {is_path ? resolve(program) : to_utf8(program)};
    for (const std::u16string& argument : arguments) parts.push_back(to_utf8(argument));
    const std::string name = parts[0];
    if (const int error = name.empty() ? ENOENT : spawn(std::move(parts)); error != 0)
      throw failure(FailureNumber::kFileNotFound, to_utf16(name + ": ") + host_failure(error).description());
  }

 private:
  // ShellExecute's result for an errno value of spawn(); `missing` is the one for a program that is not found.
  static int result_of(int error, int missing) {
    if (error == 0) return kStarted;
    return error == ENOENT ? missing : kAccessDenied;
  }
};

}  // namespace

Shell& system_shell() {
  static PosixShell shell;
  return shell;
}

}  // namespace kavo
