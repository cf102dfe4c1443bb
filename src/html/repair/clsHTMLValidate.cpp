#include "html/repair/clsHTMLValidate.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "common/byte_scan.h"
#include "common/clsCommon.h"
#include "common/clsGetTempFileName.h"
#include "common/clsRetrieveFile.h"
#include "common/pending_file.h"
#include "formats/text/utf16_mark.h"
#include "html/frmHTMLOptions.h"
#include "html/repair/html_repair.h"
#include "html/repair/torn_script.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";
constexpr std::u16string_view kUtf16Refused =
    u"The page is UTF-16 text, which is not supported; it was left as it is: ";
constexpr std::u16string_view kTornScript =
    u"This is inside a literal or a comment of PHP, so what follows may be code, and the tags of the page are "
    u"not repaired. Write '?' . '>' or '<' . '?php' in the literal to have them repaired";
constexpr std::string_view kGlueMark = "<!--htmlglue";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The repaired page could not be begun.
struct NoOutput {
  failure reason;
};

// Tries another random name when another process has just taken the first one. Throws NoOutput.
void open_temporary(std::optional<PendingFile>& file, const std::u16string& final_path) {
  constexpr int kAttempts = 100;
  clsGetTempFileName names;
  for (int attempt = 1;; ++attempt) {
    try {
      file.emplace(final_path, names.Filename());
      return;
    } catch (const failure& reason) {
      if (!reason.is(FailureNumber::kFileAlreadyExists) || attempt == kAttempts) throw NoOutput{reason};
    }
  }
}

// The backup of the original page. The destructor deletes a backup that was not there before, unless keep() was called.
class BackupCopy {
 public:
  BackupCopy() = default;
  BackupCopy(const BackupCopy&) = delete;
  BackupCopy& operator=(const BackupCopy&) = delete;
  ~BackupCopy() {
    if (!new_path_.empty()) clsCommon().DeleteFile(new_path_);
  }
  void make(std::u16string_view page, const std::u16string& path) {
    const bool is_new = !ports().files->info(path);
    copy_file(page, path);
    if (is_new) new_path_ = path;
  }
  void keep() { new_path_.clear(); }

 private:
  std::u16string new_path_;
};

}  // namespace

bool tells_repair(const Message& message) {
  using namespace html_validate_text;
  constexpr TextRow kRepairs[] = {kLessSignWritten,   kClosedBefore,    kGreaterSignWritten, kClosedAndReopened,
                                  kClosedWhereItEnds, kParagraphClosed, kClosedAtEnd};
  return std::ranges::find(kRepairs, message.number, &TextRow::number) != std::end(kRepairs);
}

void clsHTMLValidate::DisplayOptions() {
  frmHTMLOptions form;
  form.Tags(Tags());
  form.show();
  if (!form.Cancelled()) Tags(form.Tags());
}

std::int32_t clsHTMLValidate::failed(TextRow row, const failure& reason) {
  messages_.push_back({formatted(u"{}{}{}{}", row.text, file_name_, kLineEnd, reason.description()), row.number});
  return 1;
}

// `start` is the beginning of the page, long enough for a byte order mark.
std::optional<Message> clsHTMLValidate::reason_to_leave(std::string_view start) const {
  if (start.starts_with(kUtf8Mark)) start.remove_prefix(kUtf8Mark.size());
  if (begins_with_ignoring_case(start.data(), start.data() + start.size(), kGlueMark)) {
    const std::u16string values[] = {u"<!--HTMLGlue", u"1", u"1"};
    return Message{clsCommon().FormatString(html_validate_text::kGluePage.text, values),
                   html_validate_text::kGluePage.number, 1, 1};
  }
  if (script_file_.empty()) return std::nullopt;
  const std::optional<std::uint64_t> torn = find_torn_script(script_file_, server_language_);
  if (!torn) return std::nullopt;
  const LinePlace place = script_origin_ ? script_origin_(*torn) : LinePlace();
  return Message{std::u16string(kTornScript), 0, place.line, place.column};
}

void clsHTMLValidate::repair(BlockReader& page, OpenRepairedPage open) {
  progress_.report(page.percent());
  HtmlRepair repair(page, tags_, std::move(open), messages_, trail_, progress_);
  repair.origin(origin_);
  repair.ends_in_script(ends_in_script_);
  std::optional<ScriptBranches> branches;
  if (!script_file_.empty()) repair.branches(&branches.emplace(script_file_, server_language_));
  repair.run();
  repairs_ = repair.repairs();
}

std::int32_t clsHTMLValidate::HTMLValidate() {
  messages_.clear();
  repairs_ = 0;
  progress_.restart();
  messages_.push_back(
      {std::u16string(html_validate_text::kHeading.text) + file_name_, html_validate_text::kHeading.number});

  BackupCopy backup;
  if (backup_ && !check_only_) {
    try {
      backup.make(file_name_, backup_name_.empty() ? file_name_ + u".bak" : backup_name_);
    } catch (const failure& reason) {
      return failed(html_validate_text::kNoBackup, reason);
    }
  }

  std::optional<BlockReader> reader;
  try {
    reader.emplace(file_name_);
  } catch (const failure& reason) {
    return failed(html_validate_text::kFileNotOpened, reason);
  }

  while (reader->window().size() < kUtf8Mark.size() + kGlueMark.size() && reader->more()) {
  }
  const std::string_view start = reader->window();
  if (starts_as_utf16(start)) {
    messages_.push_back({std::u16string(kUtf16Refused) + file_name_});
    return 1;
  }
  if (std::optional<Message> reason = reason_to_leave(start)) {
    messages_.push_back(std::move(*reason));
    if (trail_) trail_->copied(0, 0, reader->size());
    backup.keep();
    return 0;
  }

  std::optional<PendingFile> output;
  try {
    const auto open = [&]() -> PendingFile& {
      open_temporary(output, file_name_);
      return *output;
    };
    repair(*reader, check_only_ ? OpenRepairedPage() : open);
  } catch (const NoOutput& error) {
    return failed(html_validate_text::kFileNotOpened, error.reason);
  }
  // A page without a repair is not written. Writing the same bytes again can only do harm.
  if (!output) {
    backup.keep();
    return 0;
  }

  reader.reset();
  output->finish();
  if (!clsCommon().MoveFile(output->temporary_path(), file_name_, &messages_)) {
    clsCommon().DeleteFile(output->temporary_path());
    return 1;
  }
  backup.keep();
  return 0;
}

}  // namespace kavo
