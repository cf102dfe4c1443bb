#include "common/run_journal.h"

#include <algorithm>
#include <array>
#include <optional>

#include "common/path_parts.h"
#include "platform/failure.h"

namespace kavo {
namespace {

// A state is a title, fields and an end. Fields end with a zero byte, which no path contains. Paths are in the host's
// own form. The zero byte before the title ends a field that was cut off.
constexpr std::string_view kTitle("\0KAVO run 1\0", 12);
constexpr std::string_view kToPlace = "to place";
constexpr std::string_view kStates[] = {"working", kToPlace, "undoing"};
constexpr std::string_view kPlacing = "placing";  // earlier versions wrote it when the new files were on the disk
constexpr std::string_view kBorrowed = "borrowed";
constexpr std::string_view kChange = "change";
constexpr std::string_view kTemporary = "temporary";
constexpr std::string_view kEnd = "end";

std::u16string journal_path(const std::u16string& folder) { return in_folder(folder, kJournalName); }

// The journal gets this name when the files that it is to place are on the disk. A rename, unlike one more word in it,
// is written to the disk before the renames that follow.
std::u16string placing_path(const std::u16string& folder) { return folder + u"\\journal.placing"; }

// Takes fields off the front of a state.
class Fields {
 public:
  explicit Fields(std::string_view bytes) : rest_(bytes) {}

  // Nothing when the field is cut off.
  std::optional<std::string_view> next() {
    const std::size_t size = rest_.find('\0');
    if (size == std::string_view::npos) return std::nullopt;
    const std::string_view field = rest_.substr(0, size);
    rest_.remove_prefix(size + 1);
    return field;
  }
  bool next_path(std::u16string& path) {
    const auto field = next();
    if (field) path = path_from_host(*field);
    return field.has_value();
  }

 private:
  std::string_view rest_;
};

enum class Found { kWhole, kWithoutEffect, kDamaged };

// Reads one state, which begins behind its title.
Found read_state(std::string_view bytes, bool is_placing, RunJournal& journal) {
  Fields fields(bytes);
  const auto state = fields.next();
  if (!state) return Found::kWithoutEffect;
  is_placing = is_placing || state == kPlacing;
  const auto known = std::ranges::find(kStates, state == kPlacing ? kToPlace : *state);
  if (known == std::end(kStates)) return Found::kDamaged;
  journal.state = static_cast<RunJournal::State>(known - std::begin(kStates));
  while (const auto kind = fields.next()) {
    if (kind == kEnd)
      return journal.state == RunJournal::State::kPlacing && !is_placing ? Found::kWithoutEffect : Found::kWhole;
    bool is_whole = false;
    if (kind == kBorrowed) {
      RunJournal::Borrowed& each = journal.borrowed.emplace_back();
      is_whole = fields.next_path(each.path) && fields.next_path(each.aside);
    } else if (kind == kChange) {
      RunJournal::Change& each = journal.changes.emplace_back();
      is_whole = fields.next_path(each.path) && fields.next_path(each.scratch) && fields.next_path(each.aside);
    } else if (kind == kTemporary) {
      is_whole = fields.next_path(journal.temporary_files.emplace_back());
    } else {
      return Found::kDamaged;
    }
    if (!is_whole) break;
  }
  return Found::kWithoutEffect;
}

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

// The files that must be on the disk before anything happens to the user's files, in case of a power cut. A journal that
// names those must not be empty when they have been renamed. A journal that names only the run's own files may be
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
  bytes += kTitle;
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
  const bool is_undoing = journal.state == RunJournal::State::kUndoing && files.info(placing_path(folder));
  const std::u16string path = is_undoing ? placing_path(folder) : journal_path(folder);
  {
    const auto file = files.open(path, Access::kAppend);
    file->write(bytes);
    file->close();
  }
  if (const std::vector<std::u16string> needed = needed_on_disk(journal, path); !needed.empty()) files.flush(needed);
  if (journal.state == RunJournal::State::kPlacing) files.rename_file(path, placing_path(folder));
}

RunJournal read_journal(FileSystem& files, const std::u16string& folder) {
  const bool is_placing = files.info(placing_path(folder)).has_value();
  const std::u16string path = is_placing ? placing_path(folder) : journal_path(folder);
  const std::string bytes = '\0' + read_all(files, path);  // earlier versions began with the title's first letter
  bool is_last = true;
  for (std::size_t at = bytes.rfind(kTitle); at != std::string::npos;
       at = at == 0 ? std::string::npos : bytes.rfind(kTitle, at - 1)) {
    RunJournal journal;
    const Found found = read_state(std::string_view(bytes).substr(at + kTitle.size()), is_placing, journal);
    if (found == Found::kWhole) return journal;
    if (found == Found::kDamaged && is_last) throw failure(FailureNumber::kInvalidCall, path + u" is damaged");
    // A kill, a full disk or a power cut has cut it off: the one before it counts.
    is_last = false;
  }
  // A first title that was cut off, or the zeros that a power cut may leave in the place of a file's bytes.
  const std::size_t begin = std::min(bytes.find_first_not_of('\0'), bytes.size());
  if (is_last && !kTitle.substr(1).starts_with(std::string_view(bytes).substr(begin)))
    throw failure(FailureNumber::kInvalidCall, path + u" is damaged");
  return {};
}

void clear_journal(FileSystem& files, const std::u16string& folder) {
  const bool is_placing = files.info(placing_path(folder)).has_value();
  files.open(is_placing ? placing_path(folder) : journal_path(folder), Access::kCreate)->close();
  if (is_placing) files.rename_file(placing_path(folder), journal_path(folder));
}

void place(FileSystem& files, const RunJournal::Change& change) {
  if (change.scratch.empty()) return remove_if_there(files, change.path);
  try {
    put(files, change.scratch, change.path);
  } catch (const failure&) {
    // It may have been placed before the step was interrupted.
    if (files.info(change.scratch)) throw;
  }
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
  const std::u16string prefix = folder + u'\\';
  for (const std::u16string& name : files.find(prefix + u'*')) {
    const std::u16string path = prefix + name;
    const auto info = files.info(path);
    if (info && info->is_folder)
      remove_tree(files, path);
    else
      remove_if_there(files, path);
  }
  files.remove_folder(folder);
}

}  // namespace kavo
