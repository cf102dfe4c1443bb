#include "cli/run_kavo.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "platform/files.h"

extern char** environ;

namespace kavo::test {
namespace {

// This process's environment, with another TMPDIR unless that is empty.
std::vector<std::string> environment_with(const std::string& temporary_folder) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable)
    if (temporary_folder.empty() || !std::string_view(*variable).starts_with("TMPDIR=")) variables.push_back(*variable);
  if (!temporary_folder.empty()) variables.push_back("TMPDIR=" + temporary_folder);
  return variables;
}

std::vector<char*> pointers_to(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

// `wait` returns when the command is to be interrupted; it may be empty.
Ran run(const std::vector<std::string>& arguments, const TempFolder* working_folder,
        const std::function<void()>& wait = {}, std::string_view lines = {}, const std::string& temporary_folder = {}) {
  const TempFolder streams;
  const std::string input = path_to_host(streams.write(u"input", lines));
  std::vector<std::string> words{KAVO_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = environment_with(temporary_folder);

  const std::string output = path_to_host(streams.path(u"output"));
  const std::string errors = path_to_host(streams.path(u"errors"));
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT, 0600);
  const std::string folder = working_folder != nullptr ? path_to_host(working_folder->path()) : "";
  if (working_folder != nullptr) posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  pid_t child = 0;
  const int error =
      posix_spawn(&child, KAVO_PROGRAM, &actions, nullptr, pointers_to(words).data(), pointers_to(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("the command cannot be started");

  if (wait) {
    wait();
    kill(child, SIGINT);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status), streams.read(u"output"),
          streams.read(u"errors")};
}

}  // namespace

Ran run_kavo(const std::vector<std::string>& arguments, const TempFolder* working_folder) {
  return run(arguments, working_folder);
}

Ran run_kavo_typing(const std::vector<std::string>& arguments, std::string_view lines,
                    const TempFolder& working_folder) {
  return run(arguments, &working_folder, {}, lines);
}

Ran run_kavo_with_temporary_folder(const std::vector<std::string>& arguments, const std::string& temporary_folder,
                                   const TempFolder& working_folder) {
  return run(arguments, &working_folder, {}, {}, temporary_folder);
}

std::optional<Ran> run_kavo_interrupted(const std::vector<std::string>& arguments, const std::function<void()>& wait) {
  return run(arguments, nullptr, wait);
}

}  // namespace kavo::test
