// Programs are started without a shell in between, so that no character of a file name has a meaning.
#include "platform/shell.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <vector>

#include "platform/adapters.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/posix/command_line.h"
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

// A path of the core in the host's form; everything else (options, addresses) as it is.
std::string host_argument(const std::u16string& argument) {
  return system_files().info(argument) ? resolve(argument) : to_utf8(argument);
}

// Starts a program that is looked up in PATH; 0 or the errno value.
int spawn(std::vector<std::string> parts) {
  std::vector<char*> arguments;
  for (std::string& part : parts) arguments.push_back(part.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const int error = ::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
  if (error != 0) return error;
  // Nobody waits for the program, but a child that has ended must be collected.
  std::thread([child] { ::waitpid(child, nullptr, 0); }).detach();
  return 0;
}

bool is_address(std::u16string_view file) {
  return file.find(u"://") != std::u16string_view::npos || file.starts_with(u"mailto:");
}

class PosixShell final : public Shell {
 public:
  int open(std::u16string_view file, std::u16string_view parameters) override {
    std::vector<std::string> parts;
    if (is_address(file)) {
      parts = {"xdg-open", to_utf8(file)};
    } else {
      const std::optional<FileInfo> info = system_files().info(file);
      if (!info) return kFileNotFound;
      const std::string host = resolve(system_files().absolute(file));
      if (!info->is_folder && ::access(host.c_str(), X_OK) == 0) {
        parts = {host};
        for (const std::u16string& argument : split_arguments(parameters)) parts.push_back(host_argument(argument));
      } else {
        parts = {"xdg-open", host};
      }
    }
    const bool needs_helper = parts[0] == "xdg-open";
    switch (spawn(std::move(parts))) {
      case 0:
        return kStarted;
      case ENOENT:
        return needs_helper ? kNoAssociation : kFileNotFound;
      default:
        return kAccessDenied;
    }
  }

  // The desktop knows a document by its content.
  int open_as(std::u16string_view file, std::u16string_view) override { return open(file, {}); }

  void start(std::u16string_view command_line) override {
    std::vector<std::string> parts;
    for (const std::u16string& part : split_command_line(command_line)) parts.push_back(host_argument(part));
    const int error = parts.empty() ? ENOENT : spawn(std::move(parts));
    if (error != 0) throw failure(FailureNumber::kFileNotFound, host_failure(error).description());
  }
};

}  // namespace

Shell& system_shell() {
  static PosixShell shell;
  return shell;
}

}  // namespace kavo
