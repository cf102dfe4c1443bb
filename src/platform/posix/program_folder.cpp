#include "platform/program_folder.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/files.h"
#include "platform/posix/host.h"

namespace kavo {

std::u16string program_folder() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  if (length < 0) {
    const failure reason = host_failure(errno);
    throw failure(reason.number(),
                  u"The folder of this program cannot be found: /proc/self/exe: " + reason.description(),
                  reason.source());
  }
  const std::u16string program = path_from_host({path, static_cast<std::size_t>(length)});
  return program.substr(0, program.rfind(u'\\'));
}

std::u16string home_folder() {
  const char* const home = std::getenv("HOME");
  std::u16string folder = path_from_host(home ? home : "");
  while (folder.ends_with(u'\\')) folder.pop_back();
  return folder;
}

}  // namespace kavo
