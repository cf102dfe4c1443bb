#include "common/folder_run.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "common/document_names.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/run_journal.h"
#include "common/run_recovery.h"
#include "common/run_series.h"
#include "common/scratch_names.h"
#include "common/second_attempt.h"
#include "common/staged_files.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

std::u16string text_of(const std::u16string& path) { return to_utf16(path_to_host(path)); }

// The path with the name as the disk has it; its case may differ.
std::u16string path_on_disk(FileSystem& files, const std::u16string& path) {
  const std::u16string name = file_name_of(path);
  std::optional<std::u16string> found;
  for (const std::u16string& each : files.find(path))
    if (equal_ignoring_case(each, name) && (!found || each == name)) found = each;
  return found ? in_folder(parent_of(path), *found) : path;
}

void copy_real_file(FileSystem& files, const std::u16string& from, const std::u16string& to) {
  PortsScope scope;
  ports().files = &files;
  copy_file(from, to);
}

// Keeps the old file under a second name, or as a copy when the volume does not support second names.
void keep_aside(FileSystem& files, const std::u16string& path, const std::u16string& aside) {
  try {
    files.link_file(path, aside);
  } catch (const failure&) {
    copy_real_file(files, path, aside);
    files.take_permissions(aside, path, Permissions::kAll);
  }
}

// Runs a step whose failures name the file.
template <class Step>
void about(const std::u16string& path, Step&& step) {
  try {
    step();
  } catch (const failure& reason) {
    if (reason.description().find(file_name_of(path)) != std::u16string::npos) throw;
    throw failure(reason.number(), text_of(path) + u": " + reason.description(), reason.source());
  }
}

}  // namespace

// What the FolderRuns of one thread share.
class FolderRun::Work {
 public:
  Work(const std::u16string& document, Report report)
      : document_(document),
        report_(std::move(report)),
        files_(*ports().files),
        folder_(in_folder(parent_of(document), kScratchFolder)),
        staged_(files_, folder_,
                {[this] { make_folder(); }, [this](std::u16string_view path) { note_temporary_file(path); }}) {
    take_folder(parent_of(document));
    try {
      bring_back_document();
    } catch (...) {
      end();
      throw;
    }
    ports().files = &staged_;
  }
  ~Work() {
    ports().files = &files_;
    end();
  }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;

  // The work of this thread, while it has any.
  static std::weak_ptr<Work>& current() {
    thread_local std::weak_ptr<Work> work;
    return work;
  }

  // Locks the folder until the run ends, and cleans up after a run that was killed there. The last run of a series may
  // have left it locked and clean.
  void take_folder(const std::u16string& folder) {
    const auto is_it = [&](const Held& held) { return equal_ignoring_case(held.folder, folder); };
    if (std::ranges::any_of(held_, is_it)) return;
    RunSeries* const series = held_.empty() ? RunSeries::current() : nullptr;
    if (auto kept = series ? series->take(files_, folder_) : std::nullopt) {
      held_.push_back({folder, std::move(kept->lock)});
      staged_.numbered_folders(1);
      has_folder_ = true;
      return;
    }
    held_.push_back({folder, lock_folder(files_, folder, report_)});
    recover(files_, in_folder(folder, kScratchFolder), report_);
  }

  StagedFiles& staged() { return staged_; }
  std::size_t borrowed_count() const { return journal_.borrowed.size(); }

  void borrow(std::u16string_view name) {
    const std::u16string wanted = files_.absolute(files_.link_target(name));
    for (const RunJournal::Borrowed& other : journal_.borrowed)
      if (equal_ignoring_case(other.path, wanted))
        throw failure(FailureNumber::kPermissionDenied,
                      text_of(wanted) + u" is in use by the run that this one is called from");
    const auto info = files_.info(wanted);
    if (info && info->is_folder) throw failure(FailureNumber::kPathFileAccess, text_of(wanted) + u" is a folder");
    const std::u16string path = info ? path_on_disk(files_, wanted) : wanted;
    RunJournal::Borrowed borrowed{path, info ? staged_.scratch_path(file_name_of(path)) : u""};
    make_folder();
    journal_.borrowed.push_back(borrowed);
    try {
      write_journal(files_, folder_, journal_);
      if (info) about(path, [&] { files_.rename_file(path, borrowed.aside); });
    } catch (...) {
      journal_.borrowed.pop_back();
      throw;
    }
    staged_.borrow(path);
  }

  void note_temporary_file(std::u16string_view path) {
    make_folder();
    journal_.temporary_files.push_back(files_.absolute(path));
    write_journal(files_, folder_, journal_);
  }

  // Gives back the names borrowed since there were `first` of them, the last one first.
  void give_back_from(std::size_t first) {
    while (journal_.borrowed.size() > first) {
      const RunJournal::Borrowed last = journal_.borrowed.back();
      give_back(files_, last);
      staged_.give_back(last.path);
      journal_.borrowed.pop_back();
    }
  }

  void commit() {
    const std::vector<Result> results = collect_results();
    if (results.size() == 1)
      place_alone(results.front());
    else if (!results.empty())
      place_together(results);
    for (const auto& [path, read_only] : staged_.view().read_only) files_.set_read_only(path, read_only);
    staged_.view({});
  }

 private:
  struct Held {
    std::u16string folder;
    std::unique_ptr<FileLock> lock;
  };

  // Earlier versions set a document aside under this name while they replaced it, and left it there when they were
  // killed.
  void bring_back_document() {
    const std::u16string aside = aside_name_of(document_, 1);
    if (files_.info(document_) || !files_.info(aside)) return;
    about(document_, [&] { files_.rename_file(aside, document_); });
    if (report_) report_(text_of(document_) + u" was missing; it is back from " + text_of(aside));
  }

  void make_folder() {
    if (has_folder_) return;
    about(parent_of(folder_), [&] { files_.make_folder(folder_); });
    has_folder_ = true;
    write_journal(files_, folder_, journal_);
  }

  // What becomes of a name.
  struct Result {
    std::u16string path;
    std::u16string file;  // the new file, ready to be flushed and renamed; "" when the name is only removed
    bool exists;          // there is an old file
  };

  std::vector<Result> collect_results() {
    std::vector<Result> results;
    for (const auto& [path, entry] : staged_.view().entries) {
      const auto made = entry.scratch.empty() ? std::nullopt : files_.info(entry.scratch);
      if (!entry.scratch.empty() && !made) continue;
      const bool exists = files_.info(entry.path).has_value();
      if (made)
        about(entry.path, [&, &entry = entry] {
          results.push_back({entry.path, ready_file(entry, made->is_read_only, exists), exists});
        });
      else if (exists)
        results.push_back({entry.path, u"", true});
    }
    return results;
  }

  // Gives a new file its permissions and brings it onto the volume of its final name. Returns its path.
  std::u16string ready_file(const StagedFiles::Entry& entry, bool is_read_only, bool replaces) {
    // A read-only file cannot be opened for flush() everywhere.
    if (is_read_only) files_.set_read_only(entry.scratch, false);
    // The document may be new itself: a copy that the run made.
    files_.take_permissions(entry.scratch, replaces ? entry.path : staged_.path_to_read(document_),
                            replaces ? Permissions::kAll : Permissions::kOfADocument);
    std::u16string file = entry.scratch;
    const auto volume = [&](const std::u16string& path) {
      return files_.identity(path).value_or(FileIdentity{}).volume;
    };
    if (!is_beside_scratch_folder(entry.path) && volume(parent_of(entry.path)) != volume(folder_)) {
      file = new_name_of(entry.path, 1);
      for (int number = 2; files_.info(file); ++number) file = new_name_of(entry.path, number);
      note_temporary_file(file);
      copy_real_file(files_, entry.scratch, file);
      files_.take_permissions(file, entry.scratch, Permissions::kAll);
    }
    return file;
  }

  // True when the path is on the scratch folder's volume, because both are in the same folder.
  bool is_beside_scratch_folder(const std::u16string& path) const {
    return equal_ignoring_case(parent_of(path), parent_of(folder_));
  }

  // A single file takes its name in one step, so no journal is needed.
  void place_alone(const Result& result) {
    about(result.path, [&] {
      if (!result.file.empty()) files_.flush({result.file});
      place(files_, {result.path, result.file, u""});
    });
  }

  void place_together(const std::vector<Result>& results) {
    journal_.changes.clear();
    for (const Result& result : results) {
      RunJournal::Change& change = journal_.changes.emplace_back(RunJournal::Change{result.path, result.file, u""});
      if (!result.exists) continue;
      change.aside = aside_for(change.path);
      about(change.path, [&] { keep_aside(files_, change.path, change.aside); });
    }
    journal_.state = RunJournal::State::kPlacing;
    std::size_t placed = 0;
    try {
      write_journal(files_, folder_, journal_);
      for (const RunJournal::Change& change : journal_.changes) {
        ++placed;
        about(change.path, [&] { place(files_, change); });
      }
    } catch (...) {
      undo_placing();
      throw;
    }
    journal_.state = RunJournal::State::kWorking;
  }

  // Where the old file waits: in the scratch folder or, since other folders may be on another volume, beside the file.
  std::u16string aside_for(const std::u16string& path) {
    if (is_beside_scratch_folder(path)) return staged_.scratch_path(file_name_of(path));
    std::u16string aside = aside_name_of(path, 1);
    for (int number = 2; files_.info(aside); ++number) aside = aside_name_of(path, number);
    note_temporary_file(aside);
    return aside;
  }

  void undo_placing() {
    journal_.state = RunJournal::State::kUndoing;
    try {
      with_second_attempt([&] {
        try {
          write_journal(files_, folder_, journal_);
        } catch (const failure&) {
          // The old documents must come back even if the disk is too full for the journal. If this run is killed now,
          // the next one completes it.
        }
        for (const RunJournal::Change& change : journal_.changes) undo(files_, change);
      });
      journal_.state = RunJournal::State::kWorking;
    } catch (const std::exception& reason) {
      // The folder and its journal stay, so that the next run can do what this one could not.
      keeps_folder_ = true;
      if (report_)
        report_(
            formatted(u"The documents in {} could not be put back as they were ({}). The next run there completes this",
                      text_of(parent_of(folder_)), reason_of(reason)));
    }
  }

  void end() noexcept {
    try {
      clean_up();
    } catch (const std::exception& reason) {
      report_leftover(report_, folder_, reason);
    }
  }

  // What cannot be removed stays for the next run, and so does the journal.
  void clean_up() {
    if (!has_folder_ || keeps_folder_) return;
    RunSeries* const series = staged_.numbered_folders() == 0 ? nullptr : RunSeries::current();
    with_second_attempt([&] {
      give_back_from(0);
      for (const std::u16string& file : journal_.temporary_files) remove_if_there(files_, file);
      if (series)
        leave_empty(files_, folder_, staged_.numbered_folders());
      else
        remove_tree(files_, folder_);
    });
    if (series) series->keep(files_, {folder_, std::move(held_.front().lock)});
  }

  std::u16string document_;
  Report report_;
  FileSystem& files_;
  std::u16string folder_;  // the scratch folder
  StagedFiles staged_;
  std::vector<Held> held_;
  RunJournal journal_;
  bool has_folder_ = false;
  bool keeps_folder_ = false;
};

// The state to which a part of a run goes back when it is not committed.
struct FolderRun::Saved {
  StagedFiles::View view;
  std::size_t borrowed;
};

FolderRun::FolderRun(std::u16string_view document, Report report) : work_(Work::current().lock()) {
  is_outermost_ = !work_;
  const std::u16string path = ports().files->absolute(document);
  if (is_outermost_) {
    work_ = std::make_shared<Work>(path, std::move(report));
    Work::current() = work_;
  } else {
    work_->take_folder(parent_of(path));
  }
  saved_ = std::make_unique<Saved>(Saved{work_->staged().view(), work_->borrowed_count()});
}

FolderRun::~FolderRun() {
  try {
    work_->give_back_from(saved_->borrowed);
  } catch (const std::exception&) {
    // The outermost run tries again at its end.
  }
  if (!is_committed_) work_->staged().view(std::move(saved_->view));
}

void FolderRun::commit() {
  work_->give_back_from(saved_->borrowed);
  if (is_outermost_) work_->commit();
  is_committed_ = true;
}

std::u16string FolderRun::path_to_read(std::u16string_view path) const { return work_->staged().path_to_read(path); }

std::u16string FolderRun::path_to_write(std::u16string_view path) { return work_->staged().path_to_write(path); }

std::u16string FolderRun::scratch_path(std::u16string_view name) { return work_->staged().scratch_path(name); }

void FolderRun::borrow(std::u16string_view path) { work_->borrow(path); }

void FolderRun::note_temporary_file(std::u16string_view path) { work_->note_temporary_file(path); }

std::unique_ptr<FileLock> FolderRun::settle(std::u16string_view folder, const Report& report) {
  FileSystem& files = *ports().files;
  const std::u16string scratch = in_folder(files.absolute(folder), kScratchFolder);
  if (!files.info(parent_of(scratch))) return nullptr;
  if (RunSeries* const series = RunSeries::current()) series->give_up(files);
  auto lock = lock_folder(files, parent_of(scratch), report);
  recover(files, scratch, report);
  return lock;
}

std::u16string FolderRun::without_scratch_folder(std::u16string_view message) {
  std::u16string text(message);
  for (std::size_t at = 0; (at = text.find(kScratchFolder, at)) != std::u16string::npos;) {
    std::size_t end = at + kScratchFolder.size();
    const auto is_separator = [&] { return end < text.size() && (text[end] == u'\\' || text[end] == u'/'); };
    const bool has_number = is_separator() && ++end < text.size() && text[end] >= u'0' && text[end] <= u'9';
    while (has_number && end < text.size() && text[end] >= u'0' && text[end] <= u'9') ++end;
    if (has_number && is_separator())
      text.erase(at, end + 1 - at);
    else
      at = end;
  }
  return text;
}

}  // namespace kavo
