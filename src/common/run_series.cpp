#include "common/run_series.h"

#include <exception>
#include <utility>

#include "common/path_parts.h"
#include "common/run_journal.h"
#include "common/second_attempt.h"
#include "common/staged_files.h"
#include "platform/case_fold.h"
#include "platform/ports.h"

namespace kavo {
namespace {

constexpr double kLongestTurn = 2;                   // seconds that a folder is kept
constexpr double kOthersTurn = 1.5 * kBetweenLooks;  // seconds in which each run that waits looks once

thread_local RunSeries* current_series = nullptr;

// False when somebody has removed it, or when that cannot be found out.
bool is_there(FileSystem& files, const std::u16string& scratch) noexcept {
  try {
    return files.info(numbered_scratch_folder(scratch, 1)).has_value();
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

RunSeries::RunSeries(RunReport report) : report_(std::move(report)) {
  if (current_series == nullptr) current_series = this;
}

RunSeries::~RunSeries() {
  give_up(*ports().files);
  if (current_series == this) current_series = nullptr;
}

RunSeries* RunSeries::current() { return current_series; }

std::optional<RunSeries::Kept> RunSeries::take(FileSystem& files, const std::u16string& scratch) noexcept {
  if (kept_ && equal_ignoring_case(kept_->scratch, scratch) && is_there(files, scratch))
    return std::exchange(kept_, std::nullopt);
  give_up(files);
  return std::nullopt;
}

void RunSeries::keep(FileSystem& files, Kept kept) {
  kept_ = std::move(kept);
  const double now = ports().clock->seconds();
  if (!since_) since_ = now;
  if (now - *since_ < kLongestTurn) return;
  give_up(files);
  ports().clock->sleep(kOthersTurn);
}

void RunSeries::give_up(FileSystem& files) noexcept {
  since_.reset();
  const std::optional<Kept> kept = std::exchange(kept_, std::nullopt);
  if (!kept) return;
  try {
    with_second_attempt([&] { remove_tree(files, kept->scratch); });
  } catch (const std::exception& reason) {
    report_leftover(report_, kept->scratch, reason);
  }
}

void leave_empty(FileSystem& files, const std::u16string& scratch, std::size_t numbered_folders) {
  for (std::size_t number = numbered_folders; number > 1; --number)
    remove_tree(files, numbered_scratch_folder(scratch, number));
  const std::u16string first = numbered_scratch_folder(scratch, 1);
  for (const std::u16string& name : files.find(in_folder(first, u"*"))) remove_if_there(files, in_folder(first, name));
  clear_journal(files, scratch);
}

}  // namespace kavo
