// What the native adapters share: the system's errors as `failure`, whole host files, and the configuration folder.
// Paths here are the host's own.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/failure.h"

namespace kavo {

// The failure for an errno value: its run-time error number and the system's text.
failure host_failure(int error);
[[noreturn]] void throw_errno();
// Whether this errno of a failed look-up means that the path does not exist. After any other error it may exist.
bool means_absent(int error);

// Owns an open file descriptor, or none (-1).
class Descriptor {
 public:
  explicit Descriptor(int number = -1) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor();
  int get() const noexcept { return number_; }
  int release() noexcept;

 private:
  int number_;
};

// A file that is locked with flock(2). Destruction unlocks it: closing is not enough, because a program that is being
// started has a copy of the descriptor for a moment, and a copy keeps the lock.
class LockedFile {
 public:
  explicit LockedFile(Descriptor file) noexcept : file_(std::move(file)) {}
  LockedFile(LockedFile&&) noexcept = default;
  LockedFile& operator=(LockedFile&&) = delete;
  ~LockedFile();

 private:
  Descriptor file_;
};

// Each throws `failure`. open_host() is open(2) with O_CLOEXEC.
Descriptor open_host(const std::string& path, int flags, unsigned mode = 0666);
void write_all(int descriptor, std::string_view bytes);
void close_host(Descriptor descriptor);

// The bytes of a file; nothing when there is no file of that name. Throws `failure` when it cannot be read.
std::optional<std::string> read_host_file(const std::string& path);
// Replaces a file in one step: the new content is written beside it, flushed to the disk and renamed over it. The
// permission bits of an existing file stay. Throws `failure` and then leaves the old content in place.
void replace_host_file(const std::string& path, std::string_view bytes);

// The folder of this user's settings, without "/" at its end: KAVO_CONFIG_FOLDER, or else kavo below XDG_CONFIG_HOME or
// .config in the home folder: HOME, or else what the user database says.
std::string config_folder();
// Makes a folder and all folders above it. Throws `failure`.
void make_host_folder(const std::string& path);

}  // namespace kavo
