#include "office/libreoffice/office_process.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "platform/posix/host.h"
#include "platform/unicode.h"

extern char** environ;

namespace kavo {
namespace {

// What differs from LibreOffice's own settings: nothing is written beside a document, nothing a document links to is
// fetched, no macro runs.
constexpr std::string_view kSettings =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="UseDocumentOOoLockFile" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="UseLocking" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Save/Document"><prop oor:name="AutoSave" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Save/Document"><prop oor:name="CreateBackup" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="BlockUntrustedRefererLinks" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="MacroSecurityLevel" oor:op="fuse"><value>3</value></prop></item>
<item oor:path="/org.openoffice.Office.Recovery/RecoveryInfo"><prop oor:name="Enabled" oor:op="fuse"><value>false</value></prop></item>
</oor:items>
)";

// The exit code with which LibreOffice asks to be started again, as it does once for a new profile.
constexpr int kStartAgain = 81;

std::filesystem::path make_folder() {
  std::string name = (std::filesystem::temp_directory_path() / "kavo-office-XXXXXX").string();
  if (!::mkdtemp(name.data())) throw_errno();
  return name;
}

// Our environment with some variables set.
std::vector<std::string> environment_with(const std::vector<std::string>& settings) {
  std::vector<std::string> all;
  for (char** variable = environ; *variable; ++variable) {
    const std::string_view text = *variable;
    bool replaced = false;
    for (const std::string& setting : settings)
      replaced = replaced || text.starts_with(setting.substr(0, setting.find('=') + 1));
    if (!replaced) all.emplace_back(text);
  }
  all.insert(all.end(), settings.begin(), settings.end());
  return all;
}

std::vector<char*> pointers_to(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Makes only system calls, because another thread may have held any lock when fork() copied the process.
[[noreturn]] void become(const char* program, char* const* arguments, char* const* environment, pid_t parent) {
  ::setsid();
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(1);
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing, stream);
  ::execve(program, arguments, environment);
  ::_exit(1);
}

}  // namespace

OfficeProcess::OfficeProcess(const std::filesystem::path& program_folder)
    : program_(program_folder / "soffice.bin"), folder_(make_folder()) {
  try {
    make_profile();
    start();
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    throw;
  }
}

OfficeProcess::~OfficeProcess() {
  kill();
  while (!ended_ && ::waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
  }
  std::error_code ignored;
  for (const auto& socket : sockets_) std::filesystem::remove(socket, ignored);
  std::filesystem::remove_all(folder_, ignored);
}

void OfficeProcess::make_profile() const {
  std::filesystem::create_directories(folder_ / "profile" / "user");
  std::filesystem::create_directory(folder_ / "temporary");
  replace_host_file(folder_ / "profile" / "user" / "registrymodifications.xcu", kSettings);
}

void OfficeProcess::start() {
  if (::access(program_.c_str(), X_OK) != 0)
    throw failure(FailureNumber::kCannotCreateObject,
                  u"LibreOffice is not installed: " + to_utf16(program_.string()) + u" is missing");
  std::vector<std::string> arguments{program_.string(),
                                     "--headless",
                                     "--invisible",
                                     "--norestore",
                                     "--nologo",
                                     "--nodefault",
                                     "--nolockcheck",
                                     "--accept=" + connection() + ";urp;",
                                     "-env:UserInstallation=file://" + (folder_ / "profile").string()};
  std::vector<std::string> environment =
      environment_with({"TMPDIR=" + (folder_ / "temporary").string(), "LC_ALL=C.UTF-8", "SAL_USE_VCLPLUGIN=svp"});
  const std::vector<char*> argument_list = pointers_to(arguments);
  const std::vector<char*> environment_list = pointers_to(environment);
  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child < 0) throw_errno();
  if (child == 0) become(program_.c_str(), argument_list.data(), environment_list.data(), parent);
  id_ = child;
  ended_ = false;
}

bool OfficeProcess::is_running() {
  int status = 0;
  if (!ended_ && ::waitpid(id_, &status, WNOHANG) == id_) {
    ended_ = true;
    if (WIFEXITED(status) && WEXITSTATUS(status) == kStartAgain) start();
  }
  return !ended_;
}

void OfficeProcess::note_sockets() {
  // The link of a socket's descriptor reads "socket:[12345]". In /proc/net/unix this number is the seventh word of a
  // line, and the socket's name the eighth.
  std::set<std::string> own;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/" + std::to_string(id_) + "/fd", ignored)) {
    const std::string target = std::filesystem::read_symlink(entry.path(), ignored).string();
    if (target.starts_with("socket:[")) own.insert(target.substr(8, target.size() - 9));
  }
  std::ifstream all("/proc/net/unix");
  for (std::string line; std::getline(all, line);) {
    std::istringstream words(line);
    std::vector<std::string> fields{std::istream_iterator<std::string>(words), {}};
    if (fields.size() == 8 && own.contains(fields[6]) && fields[7].find("/OSL_PIPE_") != std::string::npos)
      sockets_.emplace_back(fields[7]);
  }
}

// Kills the whole process group that setsid() made, with LibreOffice's helpers for printing and thumbnails.
void OfficeProcess::kill() noexcept {
  if (!ended_) ::kill(-id_, SIGKILL);
}

}  // namespace kavo
