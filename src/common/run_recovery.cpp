#include "common/run_recovery.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/run_journal.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr double kLongestWait = 60;  // seconds for another run
constexpr double kSilentWait = 1;    // seconds before the wait is reported

std::u16string text_of(const std::u16string& path) { return to_utf16(path_to_host(path)); }

// True when a folder with the scratch folder's name but without a journal may be the user's own, because it contains a
// file: a run makes none there before its journal.
bool holds_documents(FileSystem& files, const std::u16string& folder) {
  return std::ranges::any_of(files.find(in_folder(folder, u"*")), [&](const std::u16string& name) {
    const std::u16string path = in_folder(folder, name);
    const auto info = files.info(path);
    return info && (!info->is_folder || holds_documents(files, path));
  });
}

// Finishes or undoes what a killed run began. Returns what was done, as a clause for people.
std::u16string complete(FileSystem& files, const RunJournal& journal) {
  std::u16string done = u"what it had written was removed, and its documents are as they were before";
  if (journal.state == RunJournal::State::kPlacing) {
    for (const auto& change : journal.changes) place(files, change);
    done = u"the documents that it had finished were put in place";
  } else if (journal.state == RunJournal::State::kUndoing) {
    for (const auto& change : journal.changes) undo(files, change);
  }
  for (const auto& each : journal.borrowed) give_back(files, each);
  for (const auto& each : journal.temporary_files) remove_if_there(files, each);
  return done;
}

}  // namespace

std::unique_ptr<FileLock> lock_folder(FileSystem& files, const std::u16string& folder, const RunReport& report) {
  const double began = ports().clock->seconds();
  for (bool reported = false;;) {
    try {
      return files.lock(folder);
    } catch (const failure& reason) {
      if (reason.is(FailureNumber::kFileNotFound) || reason.is(FailureNumber::kPathNotFound))
        throw failure(FailureNumber::kPathNotFound, u"There is no folder " + text_of(folder));
      if (!reason.is(FailureNumber::kPermissionDenied)) throw;
      const double waited = ports().clock->seconds() - began;
      if (waited > kLongestWait)
        throw failure(FailureNumber::kPermissionDenied,
                      formatted(u"{} cannot be locked ({}). If another run is working there, wait until it has "
                                u"finished; then try again",
                                text_of(folder), reason.description()));
      if (waited > kSilentWait && !std::exchange(reported, true) && report)
        report(u"Waiting for another run that works in " + text_of(folder));
    }
    ports().desktop->process_messages();
    ports().clock->sleep(kBetweenLooks);
  }
}

void recover(FileSystem& files, const std::u16string& scratch, const RunReport& report) {
  if (!files.info(scratch)) return;
  std::optional<RunJournal> journal;
  try {
    journal = read_journal(files, scratch);
  } catch (const failure& reason) {
    if (!reason.is(FailureNumber::kFileNotFound))
      throw failure(reason.number(),
                    formatted(u"{} was left by a run that was stopped, and its journal cannot be read ({}). Move this "
                              u"folder away and try again",
                              text_of(scratch), reason.description()),
                    reason.source());
  }
  const std::u16string stopped = u"A run in " + text_of(parent_of(scratch)) + u" was stopped before its end: ";
  bool is_ours = true;
  try {
    is_ours = journal || !holds_documents(files, scratch);
    if (is_ours) {
      const std::u16string done = complete(files, journal.value_or(RunJournal()));
      remove_tree(files, scratch);
      if (report) report(stopped + done);
    }
  } catch (const failure& reason) {
    throw failure(reason.number(),
                  formatted(u"{}what it left could not be cleaned up ({}). The next run there tries again", stopped,
                            reason.description()),
                  reason.source());
  }
  if (!is_ours)
    throw failure(FailureNumber::kFileAlreadyExists,
                  text_of(scratch) + u" is in the way: this program needs a folder of this name for its own files. " +
                      u"Move or rename yours and try again");
}

void report_leftover(const RunReport& report, const std::u16string& scratch, const std::exception& reason) noexcept {
  try {
    if (report)
      report(formatted(u"{} could not be removed ({}). The next run in this folder tries again", text_of(scratch),
                       reason_of(reason)));
  } catch (const std::exception&) {
    // There is no other way to report it.
  }
}

// std::bad_alloc is the only exception that has no message for people.
std::u16string reason_of(const std::exception& error) {
  return to_utf16(dynamic_cast<const std::bad_alloc*>(&error) ? kNotEnoughMemory : error.what());
}

}  // namespace kavo
