// The files of a run as the command sees them: every failure says which file it is about, paths in messages are shown
// as the user writes them, and work ends at the next use of a file when memory has run out.
//
// Converters make messages in many places, with the core's paths in them. Every path of a run comes through here, so
// only this class can find them in a text without guessing.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/files.h"

namespace kavo {

class WatchedFiles final : public FileSystem {
 public:
  // `inner` must outlive the object.
  explicit WatchedFiles(FileSystem& inner) : inner_(inner) {}

  // The text with each path of the run in the host's own form; a path that is named twice in a row ("a.asp: a.asp: ")
  // appears only once.
  std::u16string in_host_form(std::u16string text) const;

  // Forgets the paths, because later messages do not name them.
  void forget();

  std::unique_ptr<File> open(std::u16string_view path, Access access) override;
  std::optional<FileInfo> info(std::u16string_view path) override;
  std::optional<FileIdentity> identity(std::u16string_view path) override;
  std::vector<std::u16string> find(std::u16string_view pattern) override;
  void make_folder(std::u16string_view path) override;
  void remove_folder(std::u16string_view path) override;
  void link_file(std::u16string_view path, std::u16string_view second_name) override;
  void flush(const std::vector<std::u16string>& paths) override;
  void remove_file(std::u16string_view path) override;
  void rename_file(std::u16string_view from, std::u16string_view to) override;
  void set_read_only(std::u16string_view path, bool read_only) override;
  std::unique_ptr<FileLock> lock(std::u16string_view path) override;
  std::u16string link_target(std::u16string_view path) override;
  void take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) override;
  std::u16string temporary_folder() override;
  std::u16string absolute(std::u16string_view path) override;

 private:
  struct PathHash : std::hash<std::u16string_view> {
    using is_transparent = void;
  };

  using Paths = std::unordered_set<std::u16string, PathHash, std::equal_to<>>;

  void remember(std::u16string_view path);

  FileSystem& inner_;
  Paths paths_;
  Paths older_paths_;  // a folder may have any number of files, so the oldest paths are forgotten
};

}  // namespace kavo
