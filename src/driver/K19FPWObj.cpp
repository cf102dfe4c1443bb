#include "driver/K19FPWObj.h"

#include <utility>

#include "common/clsCommon.h"
#include "common/pending_file.h"
#include "driver/file_types.h"
#include "html/clsASP2HTML.h"
#include "html/clsHTMLValidate.h"
#include "mif/clsMIFUtilities.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

enum PreparationResult : std::int32_t { kPrepared = 0, kHtmlFailed = 3, kMifFailed = 4 };
enum TranslationError : std::int32_t { kTudNotOpened = 1 };
constexpr std::int32_t kWizardCancelled = 1;
constexpr std::int32_t kFirstTranslationText = 500;

// The files that a preparation has written so far: removed unless it succeeds.
class WrittenFiles {
 public:
  WrittenFiles() = default;
  ~WrittenFiles() {
    for (const std::u16string& name : names_) clsCommon().DeleteFile(name);
  }
  WrittenFiles(const WrittenFiles&) = delete;
  WrittenFiles& operator=(const WrittenFiles&) = delete;
  void add(std::u16string_view name) { names_.emplace_back(name); }
  void keep() { names_.clear(); }

 private:
  std::vector<std::u16string> names_;
};

// A filter is never handed an empty script file. One without any block holds only the line break that every script
// file begins with, which counts as empty.
void fill_empty_script_file(std::u16string_view name) {
  constexpr std::uint64_t kNoBlock = 2;
  const auto info = ports().files->info(name);
  if (info && info->size > kNoBlock) return;
  PendingFile file(name);
  file.write(" \r\n");
  file.commit();
}

// The lists of the page converters begin with an entry that only names the run.
std::span<const Message> without_heading(const MessageList& messages) {
  return std::span(messages).subspan(messages.empty() ? 0 : 1);
}

}  // namespace

K19FPWObj::K19FPWObj() {
  create_filter_catalogue();
  try {
    BuildFilterTable();
  } catch (...) {
    release_filter_catalogue();
    throw;
  }
}

K19FPWObj::~K19FPWObj() { release_filter_catalogue(); }

std::int32_t K19FPWObj::SingleFileWizard(std::u16string&, std::int32_t&) { return kWizardCancelled; }

std::int32_t K19FPWObj::PreProcess(std::u16string& sFilename) {
  produced_.fill({});
  produced_[0] = {sFilename, FileTypeOf(sFilename), u""};
  produced_count_ = 1;
  source_type_ = produced_[0].file_type;
  backup_name_.clear();
  if (source_type_ == kHtmlPage || source_type_ == kServerPage)
    return prepare(&K19FPWObj::PrepareHTML) ? kPrepared : kHtmlFailed;
  if (source_type_ == kMifDocument) return prepare(&K19FPWObj::PrepareMIF) ? kPrepared : kMifFailed;
  return kPrepared;
}

std::u16string K19FPWObj::GetFile(std::int32_t nCount) const {
  if (nCount >= produced_count_) return u"";
  if (nCount < 0) throw failure(FailureNumber::kSubscriptOutOfRange, u"Subscript out of range");
  return produced_[static_cast<std::size_t>(nCount)].file_name;
}

std::int32_t K19FPWObj::CreateTranslation(std::u16string&, std::u16string&, std::int32_t&, std::int32_t&) {
  return report_translation(kTudNotOpened, u"");
}

std::span<const ProducedFile> K19FPWObj::produced_files() const {
  return {produced_.data(), static_cast<std::size_t>(produced_count_)};
}

// Runs a preparation. Its failures are told by its result alone; an interruption is raised.
bool K19FPWObj::prepare(bool (K19FPWObj::*preparation)()) {
  bool prepared = false;
  try {
    prepared = (this->*preparation)();
  } catch (const failure& reason) {
    if (reason.is(FailureNumber::kInterrupted)) {
      produced_count_ = 0;
      throw;
    }
    tell({reason.description()});
  }
  if (!prepared) produced_count_ = 0;
  return prepared;
}

bool K19FPWObj::PrepareHTML() {
  const std::u16string source = produced_[0].file_name;
  clsASP2HTML scripts;
  scripts.Progress([&](std::int16_t percent) { tell_progress(source, percent / 2); });
  scripts.ASPFile(source);
  const std::int32_t protection = scripts.ASP2HTML();
  tell_all(without_heading(scripts.ErrorList()));
  if (protection != 0) return false;
  WrittenFiles written;
  written.add(scripts.HTMFile());
  written.add(scripts.SCRFile());
  produced_[0] = {scripts.HTMFile(), kHtmlPage, u""};
  fill_empty_script_file(scripts.SCRFile());
  produced_[1] = {scripts.SCRFile(), kPlainText, u""};
  produced_count_ = 2;

  clsHTMLValidate validation;
  validation.Progress([&](std::int16_t percent) { tell_progress(source, 50 + percent / 2); });
  validation.Filename(produced_[0].file_name);
  const std::int32_t result = validation.HTMLValidate();
  tell_all(without_heading(validation.ErrorList()));
  if (result > 0) return false;
  written.keep();
  return true;
}

bool K19FPWObj::PrepareMIF() {
  const std::u16string source = produced_[0].file_name;
  // The backup is made before anything touches the source, and stays whatever follows.
  const std::u16string backup = source + u".kavo.bak";
  copy_file(source, backup);
  backup_name_ = backup;

  clsMIFUtilities mif;
  mif.Progress([&](std::int16_t percent) { tell_progress(source, percent); });
  mif.StartBatch();
  mif.MIFFile(source);
  mif.Extract();
  const bool written = mif.EndBatch() == 0;
  tell_all(mif.ErrorList());
  if (!mif.extracted() || !written) return false;
  produced_[1] = {mif.IndexFile(), kMifDocument, u""};
  produced_[2] = {mif.XrefFile(), kMifDocument, u""};
  produced_[3] = {mif.VarFile(), kMifDocument, u""};
  produced_count_ = 4;
  return true;
}

std::int32_t K19FPWObj::report_translation(std::int32_t error_code, std::u16string error_text) {
  if (error_code == 0) {
    last_error_.clear();
    return 0;
  }
  produced_count_ = 0;
  if (error_text.empty()) error_text = string_resource(kFirstTranslationText + error_code);
  last_error_ = std::move(error_text);
  if (quiet_ == 0) ports().desktop->message_box(last_error_, u"KAVO", MessageIcon::kExclamation);
  return error_code;
}

void K19FPWObj::tell(const Message& message) const {
  if (observer_.message) observer_.message(message);
}

void K19FPWObj::tell_all(std::span<const Message> messages) const {
  for (const Message& message : messages) tell(message);
}

void K19FPWObj::tell_progress(std::u16string_view file, int percent) const {
  if (observer_.progress) observer_.progress(file, percent);
}

}  // namespace kavo
