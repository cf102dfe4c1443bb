#include "common/pending_file.h"

#include <utility>

#include "common/block_reader.h"
#include "common/scratch_names.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

bool try_remove(std::u16string_view path) noexcept {
  try {
    ports().files->remove_file(path);
    return true;
  } catch (...) {
    return false;
  }
}

// False when the names are on different volumes.
bool try_rename(std::u16string_view from, std::u16string_view to) {
  try {
    ports().files->rename_file(from, to);
    return true;
  } catch (const failure& reason) {
    if (!reason.is(FailureNumber::kDifferentDrive)) throw;
    return false;
  }
}

void make_read_only_again(std::u16string_view path) noexcept {
  try {
    ports().files->set_read_only(path, true);
  } catch (...) {
    // The failure being handled matters more.
  }
}

// replace_file() for a target that is no link.
bool move_over(std::u16string_view source, const std::u16string& target) {
  FileSystem& files = *ports().files;
  const auto old = files.info(target);
  const bool was_read_only = old && !old->is_folder && old->is_read_only;
  if (was_read_only) files.set_read_only(target, false);
  bool is_moved = false;
  try {
    is_moved = try_rename(source, target);
    if (!is_moved) copy_file(source, target);
  } catch (...) {
    if (was_read_only) make_read_only_again(target);
    throw;
  }
  // The new file becomes read-only as the old one was.
  if (was_read_only) make_read_only_again(target);
  return is_moved || try_remove(source);
}

}  // namespace

PendingFile::Target PendingFile::target_of(std::u16string_view path) {
  std::u16string target = ports().files->link_target(path);
  const auto info = ports().files->info(target);
  if (info && info->is_special)
    throw failure(FailureNumber::kPathFileAccess, target + u" is a device or a pipe: no file can take its place");
  return {std::move(target), info.has_value()};
}

PendingFile::PendingFile(std::u16string_view final_path) : PendingFile(target_of(final_path), u"") {}

PendingFile::PendingFile(std::u16string_view final_path, std::u16string_view temporary_path)
    : PendingFile(target_of(final_path), temporary_path) {}

PendingFile::PendingFile(Target target, std::u16string_view temporary_path)
    : final_path_(std::move(target.path)), temporary_path_(temporary_path), replaces_(target.exists) {
  const bool is_chosen = !temporary_path_.empty();
  for (int attempt = 1;; ++attempt) {
    if (!is_chosen) temporary_path_ = ports().files->draft_path(final_path_, replaces_);
    if (temporary_path_.empty()) temporary_path_ = scratch_name_beside(final_path_);
    try {
      open();
      return;
    } catch (const failure& reason) {
      if (is_chosen || !reason.is(FailureNumber::kFileAlreadyExists) || attempt == 100) throw;
    }
  }
}

PendingFile::~PendingFile() { discard(); }

void PendingFile::open() {
  // This is allocated before the file is made. When a constructor throws, no destructor runs that could remove the
  // file.
  buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
  file_ = ports().files->open(temporary_path_, Access::kCreateNew);
  try {
    // This comes before the first byte, which others may not be allowed to read.
    if (replaces_) ports().files->take_permissions(temporary_path_, final_path_, Permissions::kAll);
  } catch (...) {
    discard();
    throw;
  }
}

void PendingFile::take_permissions_of(std::u16string_view document) {
  if (!replaces_) ports().files->take_permissions(temporary_path_, document, Permissions::kOfADocument);
}

void PendingFile::write_through(std::string_view bytes) {
  flush();
  if (bytes.size() < kBufferSize) {
    bytes.copy(buffer_.get(), bytes.size());
    used_ = bytes.size();
  } else {
    file_->write(bytes);
    written_ += bytes.size();
  }
}

void PendingFile::flush() {
  if (used_ == 0) return;
  file_->write({buffer_.get(), used_});
  written_ += used_;
  used_ = 0;
}

void PendingFile::complete() {
  if (!file_) return;
  flush();
  file_->close();
  file_.reset();
}

void PendingFile::finish() {
  complete();
  discard_ = false;
}

void PendingFile::commit() {
  complete();
  ports().files->flush({temporary_path_});
  if (temporary_path_ != final_path_) move_over(temporary_path_, final_path_);
  discard_ = false;
}

void PendingFile::discard() noexcept {
  file_.reset();
  if (!discard_ || !buffer_) return;
  discard_ = false;
  // A file that cannot be removed stays; the failure being handled matters more.
  try_remove(temporary_path_);
}

bool replace_file(std::u16string_view source, std::u16string_view target) {
  return move_over(source, file_to_replace(target));
}

std::u16string file_to_replace(std::u16string_view path) { return PendingFile::target_of(path).path; }

void copy_file(std::u16string_view source, std::u16string_view target) {
  BlockReader reader(source);
  PendingFile copy(target);
  copy.take_permissions_of(source);
  while (reader.more()) {
    copy.write(reader.window());
    reader.consume(reader.window().size());
  }
  copy.commit();
}

}  // namespace kavo
