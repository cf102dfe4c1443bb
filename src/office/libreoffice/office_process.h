// LibreOffice running beside us without a screen, in a process group, with a profile and a temporary folder of its own.
//
// It is started directly and not through its start script, so that its process number is known. It dies with us, Ctrl+C
// in the terminal does not reach it, and the user's own LibreOffice is not touched.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

namespace kavo {

class OfficeProcess {
 public:
  // Starts it from the folder of its programs; throws `failure` 429 when it is not there. It is not ready to serve yet.
  explicit OfficeProcess(const std::filesystem::path& program_folder);
  // Kills it and removes its folder.
  ~OfficeProcess();
  OfficeProcess(const OfficeProcess&) = delete;
  OfficeProcess& operator=(const OfficeProcess&) = delete;

  // Where it serves: the rest of a UNO URL.
  std::string connection() const { return "pipe,name=" + folder_.filename().string(); }
  const std::filesystem::path& folder() const { return folder_; }
  pid_t id() const { return id_; }
  // Starts LibreOffice again if it ended in order to be started again.
  bool is_running();
  // Notes the sockets at which LibreOffice serves, so that the destructor can remove them from the system's temporary
  // folder: a LibreOffice that is killed leaves them there. Call it when LibreOffice serves.
  void note_sockets();
  // Safe from any thread, any number of times.
  void kill() noexcept;

 private:
  void make_profile() const;
  void start();

  std::filesystem::path program_;
  std::filesystem::path folder_;
  std::atomic<pid_t> id_ = -1;
  std::atomic<bool> ended_ = true;
  std::vector<std::filesystem::path> sockets_;
};

}  // namespace kavo
