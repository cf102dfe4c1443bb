#include "common/run_series.h"

#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "common/path_parts.h"
#include "common/run_journal.h"
#include "common/second_attempt.h"
#include "common/staged_files.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

thread_local RunSeries* current_series = nullptr;

void remove_everything_in(FileSystem& files, const std::u16string& folder) {
  for (const std::u16string& name : files.find(in_folder(folder, u"*"))) {
    const std::u16string path = in_folder(folder, name);
    const auto info = files.info(path);
    if (info && info->is_folder)
      remove_tree(files, path);
    else
      remove_if_there(files, path);
  }
}

bool may_be_there(FileSystem& files, const std::u16string& path) {
  try {
    return files.info(path).has_value();
  } catch (const failure&) {
    return true;
  }
}

}  // namespace

RunSeries::RunSeries(RunReport report) : report_(std::move(report)), is_outermost_(current_series == nullptr) {
  if (is_outermost_) current_series = this;
}

RunSeries::~RunSeries() {
  remove_idle(*ports().files);
  if (is_outermost_) current_series = nullptr;
}

RunSeries* RunSeries::current() { return current_series; }

void RunSeries::begin(FileSystem& files, const std::u16string& scratch) noexcept {
  if (!equal_ignoring_case(idle_, scratch)) remove_idle(files);
}

void RunSeries::leave(FileSystem& files, const std::u16string& scratch, std::size_t numbered_folders) {
  for (std::size_t number = 1; number <= numbered_folders; ++number) {
    const std::u16string folder = numbered_scratch_folder(scratch, number);
    if (number == 1)
      remove_everything_in(files, folder);
    else
      remove_tree(files, folder);
  }
  clear_journal(files, scratch);
  idle_ = scratch;
}

void RunSeries::remove_idle(FileSystem& files) noexcept {
  if (idle_.empty()) return;
  try {
    const std::u16string scratch = std::exchange(idle_, u"");
    std::u16string reason = u"it holds what another run left";
    try {
      std::unique_ptr<FileLock> lock;
      try {
        lock = with_second_attempt([&] { return files.lock(parent_of(scratch)); });
      } catch (const failure& error) {
        // The run of another program that has the lock removes the folder, or leaves it to its own series.
        if (error.is(FailureNumber::kPermissionDenied)) return;
        throw;
      }
      if (with_second_attempt([&] { return is_idle(files, scratch); }))
        return with_second_attempt([&] { remove_tree(files, scratch); });
    } catch (const failure& error) {
      reason = error.description();
    }
    if (report_ && may_be_there(files, scratch))
      report_(formatted(u"{} could not be removed ({}). The next run in this folder tries again",
                        to_utf16(path_to_host(scratch)), reason));
  } catch (const std::exception&) {
    // There is no other way to report it.
  }
}

bool is_idle(FileSystem& files, const std::u16string& scratch) {
  const std::u16string first = numbered_scratch_folder(scratch, 1);
  const std::vector<std::u16string> all = {file_name_of(first), std::u16string(kJournalName)};
  if (files.find(in_folder(scratch, u"*")) != all) return false;
  const auto journal = files.info(in_folder(scratch, kJournalName));
  const auto folder = files.info(first);
  return journal && !journal->is_folder && journal->size == 0 && folder && folder->is_folder &&
         files.find(in_folder(first, u"*")).empty();
}

}  // namespace kavo
