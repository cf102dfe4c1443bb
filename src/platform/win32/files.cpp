// Files through the W calls.
//
// A file is replaced by MoveFileEx, which is one step: the target is the old file or the new one at every moment.
// ReplaceFile would carry the old file's attributes and access list over, but works in several steps with documented
// states between them in which the target is missing.
#include "platform/files.h"

#include <windows.h>

#include <algorithm>

#include "platform/adapters.h"
#include "platform/win32/owners.h"
#include "platform/win32/paths.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

// ReadFile and WriteFile use 32-bit sizes. One piece stays well below that.
constexpr std::size_t kLargestPiece = std::size_t{1} << 30;

bool is_folder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// For a call that failed on `path`. The system reports "access denied" for a folder that is used as a file.
[[noreturn]] void throw_file_error(const std::wstring& path) {
  const DWORD code = GetLastError();
  if (code == ERROR_ACCESS_DENIED && is_folder(path)) throw failure(FailureNumber::kPathFileAccess, system_text(code));
  throw system_failure(code);
}

// Whether this error of a failed look-up means that the path does not exist, as with an impossible name. After any
// other error it may exist.
bool means_absent(DWORD code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND || code == ERROR_DIRECTORY ||
         code == ERROR_INVALID_NAME;
}

std::optional<FileIdentity> identity_of(const std::wstring& path) {
  const unique_handle file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file) {
    if (means_absent(GetLastError())) return std::nullopt;
    throw_last_error();
  }
  BY_HANDLE_FILE_INFORMATION data;
  if (!GetFileInformationByHandle(file.get(), &data)) throw_last_error();
  return FileIdentity{data.dwVolumeSerialNumber,
                      (static_cast<std::uint64_t>(data.nFileIndexHigh) << 32) | data.nFileIndexLow};
}

// A read-only file is neither emptied nor replaced. Windows refuses that by itself, except where another system decides
// on the rights (shared drives, Wine).
void check_writable(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool is_read_only = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0 &&
                            (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  if (is_read_only) throw system_failure(ERROR_ACCESS_DENIED);
}

class WindowsFile final : public File {
 public:
  explicit WindowsFile(unique_handle handle) : handle_(std::move(handle)) {}

  std::size_t read(std::span<char> buffer) override {
    std::size_t done = 0;
    while (done < buffer.size()) {
      DWORD count = 0;
      const DWORD piece = static_cast<DWORD>(std::min(buffer.size() - done, kLargestPiece));
      if (!ReadFile(handle_.get(), buffer.data() + done, piece, &count, nullptr)) throw_last_error();
      if (count == 0) break;
      done += count;
    }
    return done;
  }

  void write(std::string_view bytes) override {
    while (!bytes.empty()) {
      DWORD count = 0;
      const DWORD piece = static_cast<DWORD>(std::min(bytes.size(), kLargestPiece));
      if (!WriteFile(handle_.get(), bytes.data(), piece, &count, nullptr)) throw_last_error();
      if (count == 0) throw system_failure(ERROR_DISK_FULL);
      bytes.remove_prefix(count);
    }
  }

  void seek(std::uint64_t position) override {
    LARGE_INTEGER target;
    target.QuadPart = static_cast<LONGLONG>(position);
    if (!SetFilePointerEx(handle_.get(), target, nullptr, FILE_BEGIN)) throw_last_error();
  }

  std::uint64_t size() override {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(handle_.get(), &size)) throw_last_error();
    return static_cast<std::uint64_t>(size.QuadPart);
  }

  void close() override {
    if (handle_ && !CloseHandle(handle_.release())) throw_last_error();
  }

 private:
  unique_handle handle_;
};

// A named mutex (CreateMutex), because a lock on the file itself would disappear when a run replaces the file. It is
// named after the identity of the file or folder, so that every path to it means the same lock.
class WindowsLock final : public FileLock {
 public:
  explicit WindowsLock(const std::wstring& path) {
    const std::optional<FileIdentity> identity = identity_of(path);
    if (!identity) throw system_failure(ERROR_FILE_NOT_FOUND);
    const std::wstring name =
        L"Local\\kavo-" + std::to_wstring(identity->volume) + L"-" + std::to_wstring(identity->number);
    mutex_ = unique_handle(CreateMutexW(nullptr, FALSE, name.c_str()));
    if (!mutex_) throw_last_error();
    const DWORD answer = WaitForSingleObject(mutex_.get(), 0);
    if (answer == WAIT_FAILED) throw_last_error();
    if (answer == WAIT_TIMEOUT)
      throw failure(FailureNumber::kPermissionDenied, from_wide(path) + u" is in use by another run");
  }
  ~WindowsLock() override { ReleaseMutex(mutex_.get()); }

 private:
  unique_handle mutex_;
};

class WindowsFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> open(std::u16string_view path, Access access) override {
    const std::wstring name = system_path(path);
    const bool reading = access == Access::kRead;
    // Readers share everything, so that a document that its editor holds open can be read.
    const DWORD sharing = reading ? FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE : FILE_SHARE_READ;
    const bool keeps_name = access == Access::kCreate || access == Access::kAppend;
    if (keeps_name) check_writable(name);
    // OPEN_ALWAYS and emptying below: CREATE_ALWAYS refuses a hidden file and drops the attributes of any other.
    const DWORD disposition = reading ? OPEN_EXISTING : keeps_name ? OPEN_ALWAYS : CREATE_NEW;
    unique_handle handle(CreateFileW(name.c_str(), reading ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE, sharing,
                                     nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle) throw_file_error(name);
    if (access == Access::kCreate && !SetEndOfFile(handle.get())) throw_last_error();
    if (access == Access::kAppend && !SetFilePointerEx(handle.get(), {}, nullptr, FILE_END)) throw_last_error();
    return std::make_unique<WindowsFile>(std::move(handle));
  }

  std::optional<FileInfo> info(std::u16string_view path) override {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(system_path(path).c_str(), GetFileExInfoStandard, &data)) {
      if (means_absent(GetLastError())) return std::nullopt;
      throw_last_error();
    }
    FileInfo result;
    result.size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    result.is_folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    result.is_read_only = (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    result.is_hidden = (data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
    if (result.is_folder) result.size = 0;
    return result;
  }

  std::optional<FileIdentity> identity(std::u16string_view path) override { return identity_of(system_path(path)); }

  std::vector<std::u16string> find(std::u16string_view pattern) override {
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW entry;
    unique_find_handle search(FindFirstFileW(system_path(pattern).c_str(), &entry));
    if (!search) {
      if (means_absent(GetLastError())) return names;
      throw_last_error();
    }
    do {
      const std::u16string name = from_wide(entry.cFileName);
      if (name != u"." && name != u"..") names.push_back(name);
    } while (FindNextFileW(search.get(), &entry));
    if (GetLastError() != ERROR_NO_MORE_FILES) throw_last_error();
    return names;
  }

  void make_folder(std::u16string_view path) override {
    if (!CreateDirectoryW(system_path(path).c_str(), nullptr)) throw_last_error();
  }

  void remove_folder(std::u16string_view path) override {
    if (!RemoveDirectoryW(system_path(path).c_str())) throw_last_error();
  }

  void link_file(std::u16string_view path, std::u16string_view second_name) override {
    if (!CreateHardLinkW(system_path(second_name).c_str(), system_path(path).c_str(), nullptr)) throw_last_error();
  }

  void flush(const std::vector<std::u16string>& paths) override {
    for (const std::u16string& path : paths) {
      try {
        const std::wstring name = system_path(path);
        const unique_handle file(CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file) throw_file_error(name);
        if (!FlushFileBuffers(file.get())) throw_last_error();
      } catch (const failure& reason) {
        throw failure(reason.number(), path + u": " + reason.description(), reason.source());
      }
    }
  }

  void remove_file(std::u16string_view path) override {
    const std::wstring name = system_path(path);
    if (!DeleteFileW(name.c_str())) throw_file_error(name);
  }

  void rename_file(std::u16string_view from, std::u16string_view to) override {
    const std::wstring target = system_path(to);
    check_writable(target);
    // MOVEFILE_COPY_ALLOWED is left out, because a copy would not be one step.
    if (!MoveFileExW(system_path(from).c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
      throw_file_error(target);
  }

  void set_read_only(std::u16string_view path, bool read_only) override {
    const std::wstring name = system_path(path);
    const DWORD old = GetFileAttributesW(name.c_str());
    if (old == INVALID_FILE_ATTRIBUTES) throw_last_error();
    const DWORD wanted = read_only ? old | FILE_ATTRIBUTE_READONLY : old & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    if (!SetFileAttributesW(name.c_str(), wanted)) throw_last_error();
  }

  std::unique_ptr<FileLock> lock(std::u16string_view path) override {
    return std::make_unique<WindowsLock>(system_path(path));
  }

  std::u16string link_target(std::u16string_view path) override {
    const std::wstring name = system_path(path);
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
      return std::u16string(path);
    const unique_handle target(CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                           nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!target) return std::u16string(path);
    std::wstring full(GetFinalPathNameByHandleW(target.get(), nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
    const DWORD size =
        GetFinalPathNameByHandleW(target.get(), full.data(), static_cast<DWORD>(full.size()), FILE_NAME_NORMALIZED);
    if (size == 0 || size >= full.size()) return std::u16string(path);
    full.resize(size);
    // The system adds the prefix for paths of more than 260 characters. The rest of the program uses paths without it.
    constexpr std::wstring_view kShare = L"\\\\?\\UNC\\";
    constexpr std::wstring_view kLong = L"\\\\?\\";
    if (full.starts_with(kShare)) return u"\\\\" + from_wide(full.substr(kShare.size()));
    return from_wide(full.starts_with(kLong) ? full.substr(kLong.size()) : full);
  }

  void take_permissions(std::u16string_view, std::u16string_view, Permissions) override {}

  std::u16string temporary_folder() override {
    wchar_t buffer[MAX_PATH + 1];
    const DWORD length = GetTempPathW(MAX_PATH + 1, buffer);
    return from_wide(std::wstring_view(buffer, length <= MAX_PATH ? length : 0));
  }

  std::u16string absolute(std::u16string_view path) override { return from_wide(full_path(to_wide(path))); }
};

}  // namespace

FileSystem& system_files() {
  static WindowsFileSystem files;
  return files;
}

}  // namespace kavo
