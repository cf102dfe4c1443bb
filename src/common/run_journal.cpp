#include "common/run_journal.h"

#include <algorithm>
#include <array>

#include "platform/failure.h"

namespace kavo {
namespace {

// Fields end with a zero byte, which no path contains. Paths are in the host's own form.
constexpr std::string_view kTitle = "KAVO run 1";
constexpr std::string_view kStates[] = {"working", "placing", "undoing"};
constexpr std::string_view kBorrowed = "borrowed";
constexpr std::string_view kChange = "change";
constexpr std::string_view kTemporary = "temporary";
constexpr std::string_view kEnd = "end";

std::u16string journal_path(const std::u16string& folder) { return folder + u"\\journal"; }

class Fields {
 public:
  Fields(std::string bytes, const std::u16string& path) : bytes_(std::move(bytes)), path_(path) {}

  std::string_view next() {
    const std::size_t end = bytes_.find('\0', at_);
    if (end == std::string::npos) throw_damaged();
    const std::string_view field = std::string_view(bytes_).substr(at_, end - at_);
    at_ = end + 1;
    return field;
  }
  std::u16string next_path() { return path_from_host(next()); }
  [[noreturn]] void throw_damaged() const { throw failure(FailureNumber::kInvalidCall, path_ + u" is damaged"); }

 private:
  std::string bytes_;
  std::u16string path_;
  std::size_t at_ = 0;
};

std::string read_all(FileSystem& files, const std::u16string& path) {
  const auto file = files.open(path, Access::kRead);
  std::string bytes;
  std::array<char, 4096> block;
  while (const std::size_t count = file->read(block)) bytes.append(block.data(), count);
  return bytes;
}

bool make_writable(FileSystem& files, const std::u16string& path) {
  const auto info = files.info(path);
  if (!info || info->is_folder || !info->is_read_only) return false;
  files.set_read_only(path, false);
  return true;
}

void put(FileSystem& files, const std::u16string& from, const std::u16string& path) {
  try {
    return files.rename_file(from, path);
  } catch (const failure& reason) {
    if (!reason.is(FailureNumber::kPermissionDenied) || !make_writable(files, path)) throw;
  }
  // A read-only file is replaced by one that is read-only, too.
  try {
    files.rename_file(from, path);
  } catch (...) {
    files.set_read_only(path, true);
    throw;
  }
  files.set_read_only(path, true);
}

// The files that must be on the disk before the journal gets its name, in case of a power cut. A journal that names the
// user's files must not be empty when those have been renamed. A journal that names only the run's own files may be
// lost, because what remains of them does no harm. New files must be complete before they take their names. Flushing
// all of them together takes as long as flushing one.
std::vector<std::u16string> needed_on_disk(const RunJournal& journal, const std::u16string& path) {
  const bool sets_aside = std::ranges::any_of(journal.borrowed, [](const auto& each) { return !each.aside.empty(); });
  if (!sets_aside && journal.changes.empty()) return {};
  std::vector<std::u16string> needed{path};
  if (journal.state == RunJournal::State::kPlacing)
    for (const RunJournal::Change& change : journal.changes)
      if (!change.scratch.empty()) needed.push_back(change.scratch);
  return needed;
}

}  // namespace

void write_journal(FileSystem& files, const std::u16string& folder, const RunJournal& journal) {
  std::string bytes;
  const auto add = [&](std::string_view field) { bytes.append(field).push_back('\0'); };
  const auto add_path = [&](const std::u16string& path) { add(path_to_host(path)); };
  add(kTitle);
  add(kStates[static_cast<std::size_t>(journal.state)]);
  for (const RunJournal::Borrowed& each : journal.borrowed) {
    add(kBorrowed);
    add_path(each.path);
    add_path(each.aside);
  }
  for (const RunJournal::Change& each : journal.changes) {
    add(kChange);
    add_path(each.path);
    add_path(each.scratch);
    add_path(each.aside);
  }
  for (const std::u16string& each : journal.temporary_files) {
    add(kTemporary);
    add_path(each);
  }
  add(kEnd);
  const std::u16string path = journal_path(folder);
  const std::u16string next = path + u".new";
  {
    const auto file = files.open(next, Access::kCreate);
    file->write(bytes);
    file->close();
  }
  if (const std::vector<std::u16string> needed = needed_on_disk(journal, next); !needed.empty()) files.flush(needed);
  files.rename_file(next, path);
}

RunJournal read_journal(FileSystem& files, const std::u16string& folder) {
  const std::u16string path = journal_path(folder);
  std::string bytes = read_all(files, path);
  // After a power cut: a journal that names files of the user is never empty.
  if (bytes.empty()) return {};
  Fields fields(std::move(bytes), path);
  if (fields.next() != kTitle) fields.throw_damaged();
  RunJournal journal;
  const std::string_view state = fields.next();
  std::size_t index = 0;
  while (index < std::size(kStates) && state != kStates[index]) ++index;
  if (index == std::size(kStates)) fields.throw_damaged();
  journal.state = static_cast<RunJournal::State>(index);
  for (std::string_view kind; (kind = fields.next()) != kEnd;) {
    if (kind == kBorrowed) {
      std::u16string name = fields.next_path();
      journal.borrowed.push_back({std::move(name), fields.next_path()});
    } else if (kind == kChange) {
      RunJournal::Change change;
      change.path = fields.next_path();
      change.scratch = fields.next_path();
      change.aside = fields.next_path();
      journal.changes.push_back(std::move(change));
    } else if (kind == kTemporary) {
      journal.temporary_files.push_back(fields.next_path());
    } else {
      fields.throw_damaged();
    }
  }
  return journal;
}

void place(FileSystem& files, const RunJournal::Change& change) {
  if (change.scratch.empty())
    remove_if_there(files, change.path);
  else if (files.info(change.scratch))
    put(files, change.scratch, change.path);
}

void undo(FileSystem& files, const RunJournal::Change& change) {
  if (!change.aside.empty()) {
    if (files.info(change.aside)) put(files, change.aside, change.path);
  } else if (!change.scratch.empty() && !files.info(change.scratch)) {
    remove_if_there(files, change.path);
  }
}

void give_back(FileSystem& files, const RunJournal::Borrowed& borrowed) {
  const bool had_file = !borrowed.aside.empty();
  if (had_file && !files.info(borrowed.aside)) return;
  // The run's file is removed first. If the user's file were renamed over it, it would get that file's name, which may
  // differ in case.
  remove_if_there(files, borrowed.path);
  if (had_file) files.rename_file(borrowed.aside, borrowed.path);
}

void remove_if_there(FileSystem& files, const std::u16string& path) {
  if (!files.info(path)) return;
  make_writable(files, path);
  files.remove_file(path);
}

void remove_tree(FileSystem& files, const std::u16string& folder) {
  if (!files.info(folder)) return;
  for (const std::u16string& name : files.find(folder + u"\\*")) {
    const std::u16string path = folder + u'\\' + name;
    const auto info = files.info(path);
    if (info && info->is_folder)
      remove_tree(files, path);
    else
      remove_if_there(files, path);
  }
  files.remove_folder(folder);
}

}  // namespace kavo
