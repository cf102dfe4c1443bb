// "\" and "/" change places; a "\" in a host name becomes the lone surrogate U+DC5C, as an invalid byte becomes
// U+DC00 + byte, so that every name of this host comes back as it was.
#include "platform/posix/paths.h"

#include <dirent.h>

#include <cerrno>
#include <memory>
#include <optional>

#include "platform/case_fold.h"
#include "platform/files.h"
#include "platform/posix/host.h"
#include "platform/posix/large_folders.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr char16_t kEscapedBackslash = 0xDC5C;

bool exists(const std::string& path) { return status_of(path, false).has_value(); }

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

// The first entry, in the order of bytes, that is `name` when case does not count. The folder's status, where the
// caller knows it.
std::optional<std::string> find_ignoring_case(const std::string& folder, const std::string& name,
                                              const std::optional<struct stat>& status) {
  if (const auto kept = spellings_in_large_folder(folder, name, status))
    return kept->empty() ? std::nullopt : std::optional(kept->front());
  const std::u16string wanted = to_utf16(name);
  std::optional<std::string> best;
  std::size_t entries = 0;
  for_each_entry(folder, [&](const char* entry) {
    ++entries;
    if ((!best || entry < *best) && equal_ignoring_case(to_utf16(entry), wanted)) best = entry;
  });
  note_listing(folder, entries);
  return best;
}

std::string folder_or_current(const std::string& folder) { return folder.empty() ? "." : folder; }

}  // namespace

void for_each_entry(const std::string& folder, const std::function<void(const char* name)>& visit) {
  const std::unique_ptr<DIR, CloseFolder> listing(::opendir(folder.c_str()));
  if (!listing) {
    if (means_absent(errno)) return;
    throw_errno();
  }
  for (;;) {
    errno = 0;  // the only way to distinguish the end from an error
    const dirent* const entry = ::readdir(listing.get());
    if (entry == nullptr) {
      if (errno != 0) throw_errno();
      return;
    }
    visit(entry->d_name);
  }
}

std::u16string path_from_host(std::string_view host_path) {
  std::u16string path = to_utf16(host_path);
  for (char16_t& unit : path) {
    if (unit == u'\\')
      unit = kEscapedBackslash;
    else if (unit == u'/')
      unit = u'\\';
  }
  return path;
}

std::string path_to_host(std::u16string_view path) {
  std::string host;
  std::u16string plain;
  for (std::size_t i = 0; i < path.size(); ++i) {
    const bool is_low_half = i > 0 && path[i - 1] >= 0xD800 && path[i - 1] <= 0xDBFF;
    if (path[i] == kEscapedBackslash && !is_low_half) {
      host += to_utf8(plain);
      host += '\\';
      plain.clear();
    } else {
      plain += path[i] == u'\\' ? u'/' : path[i];
    }
  }
  return host + to_utf8(plain);
}

std::optional<struct stat> status_of(const std::string& path, bool follow_links) {
  struct stat status;
  if ((follow_links ? ::stat(path.c_str(), &status) : ::lstat(path.c_str(), &status)) == 0) return status;
  if (means_absent(errno)) return std::nullopt;
  throw_errno();
}

std::optional<struct stat> FoundPath::target_status() const {
  return status && S_ISLNK(status->st_mode) ? status_of(host) : status;
}

FoundPath look_up(std::u16string_view path) {
  std::string host = path_to_host(path);
  if (host.find('\0') != std::string::npos) throw host_failure(EINVAL);
  if (host.empty()) return {};
  if (auto status = status_of(host, false)) return {std::move(host), status};
  // Usually the folder exists and only the last name does not.
  std::string resolved = split_host_path(host).folder;
  std::optional<struct stat> folder;  // what is known of `resolved`
  if (!resolved.empty()) folder = status_of(resolved, false);
  if (!folder) resolved.clear();
  std::size_t at = resolved.size();
  while (at < host.size()) {
    const std::size_t end = std::min(host.find('/', at), host.size());
    const std::string name = host.substr(at, end - at);
    if (!name.empty()) {
      // The complete path as written is known not to exist.
      const bool is_known = end == host.size() && host.starts_with(resolved);
      if (is_known || !exists(resolved + name)) {
        const std::optional<std::string> found = find_ignoring_case(folder_or_current(resolved), name, folder);
        if (!found) return {resolved + host.substr(at), std::nullopt};
        resolved += *found;
      } else {
        resolved += name;
      }
    }
    if (end < host.size()) resolved += '/';
    folder.reset();
    at = end + 1;
  }
  auto status = status_of(resolved, false);
  return {std::move(resolved), status};
}

std::string resolve(std::u16string_view path) { return look_up(path).host; }

SplitPath split_host_path(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {"", path};
  return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

}  // namespace kavo
