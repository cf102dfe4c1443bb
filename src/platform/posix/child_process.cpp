#include "platform/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

#include "platform/posix/host.h"

namespace kavo {
namespace {

class Pipe {
 public:
  Pipe() {
    if (::pipe2(ends_, O_CLOEXEC) != 0) throw host_failure(errno);
  }
  ~Pipe() {
    close(0);
    close(1);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int end(int which) const { return ends_[which]; }
  void close(int which) {
    if (ends_[which] >= 0) ::close(ends_[which]);
    ends_[which] = -1;
  }

 private:
  int ends_[2] = {-1, -1};
};

class PosixChild final : public ChildProcess {
 public:
  explicit PosixChild(const std::vector<std::string>& arguments) {
    std::vector<char*> words;
    std::string name = "kavo";
    words.push_back(name.data());
    std::vector<std::string> copies = arguments;
    for (std::string& copy : copies) words.push_back(copy.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input_.end(0), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output_.end(1), STDOUT_FILENO);
    const int error = ::posix_spawn(&child_, "/proc/self/exe", &actions, nullptr, words.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw host_failure(error);
    input_.close(0);
    output_.close(1);
  }
  ~PosixChild() override {
    end();
    wait();
  }
  void write_input(std::string_view text) override {
    while (!text.empty()) {
      const ssize_t written = ::write(input_.end(1), text.data(), text.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0 && errno == EPIPE) return;
      if (written < 0) throw host_failure(errno);
      text.remove_prefix(static_cast<std::size_t>(written));
    }
  }
  bool read_line(std::string& line) override {
    for (;;) {
      if (const std::size_t end = unread_.find('\n', searched_); end != std::string::npos) {
        line = unread_.substr(0, end);
        unread_.erase(0, end + 1);
        searched_ = 0;
        return true;
      }
      searched_ = unread_.size();
      char buffer[65536];
      const ssize_t count = ::read(output_.end(0), buffer, sizeof buffer);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      unread_.append(buffer, static_cast<std::size_t>(count));
    }
  }
  void interrupt() noexcept override { send(SIGINT); }
  void end() noexcept override { send(SIGKILL); }
  int wait() noexcept override {
    // The process stays a zombie until the second wait below, so until then no other process gets its number.
    siginfo_t state;
    while (::waitid(P_PID, static_cast<id_t>(child_), &state, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    const std::lock_guard guard(mutex_);
    if (has_ended_) return code_;
    int status = 0;
    while (::waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
    has_ended_ = true;
    return code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  void send(int number) noexcept {
    const std::lock_guard guard(mutex_);
    if (!has_ended_) ::kill(child_, number);
  }

  Pipe input_, output_;
  pid_t child_ = 0;
  std::string unread_;
  std::size_t searched_ = 0;
  std::mutex mutex_;  // for what follows
  bool has_ended_ = false;
  int code_ = -1;
};

}  // namespace

std::unique_ptr<ChildProcess> start_this_program(const std::vector<std::string>& arguments) {
  return std::make_unique<PosixChild>(arguments);
}

void end_with_parent() noexcept { ::prctl(PR_SET_PDEATHSIG, SIGTERM); }

}  // namespace kavo
