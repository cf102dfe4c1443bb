#include "driver/K19FPWObj.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/clsCommon.h"
#include "common/folder_run.h"
#include "common/line_index.h"
#include "common/pending_file.h"
#include "driver/document_files.h"
#include "driver/file_types.h"
#include "driver/translation.h"
#include "driver/tud_name.h"
#include "driver/wizard_run.h"
#include "html/repair/clsHTMLValidate.h"
#include "html/scripts/clsASP2HTML.h"
#include "mif/clsMIFUtilities.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

enum PreparationResult : std::int32_t { kPrepared = 0, kHtmlFailed = 3, kMifFailed = 4 };

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

std::u16string folder_of(const std::u16string& path) {
  return clsCommon().strParseFileName(ports().files->absolute(path), 0);
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

std::int32_t K19FPWObj::SingleFileWizard(std::u16string& sFilename, std::int32_t& nKAVO) {
  WizardSteps steps;
  steps.observer = observer_;
  steps.prepare = [this](std::u16string file, std::u16string_view html_tags, const RunObserver& observer) {
    struct Restored {
      K19FPWObj& object;
      RunObserver observer;
      ~Restored() {
        object.observer_ = std::move(observer);
        object.html_tags_.reset();
      }
    } restored{*this, std::exchange(observer_, observer)};
    html_tags_ = html_tags;
    return PreProcess(file);
  };
  steps.produced_files = [this] { return std::span(produced_).first(static_cast<std::size_t>(produced_count_)); };
  return run_single_file_wizard({sFilename, nKAVO, quiet_ != 0}, steps);
}

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

std::int32_t K19FPWObj::CreateTranslation(std::u16string& sTUD, std::u16string& sTarget, std::int32_t& nPreview,
                                          std::int32_t& nHighlight) {
  const TranslationRequest request{.tud = sTUD, .target = sTarget, .preview = nPreview, .highlight = nHighlight};
  try {
    const TranslationResult result = create_translation(request, observer_);
    if (result.error == kNoError) sTarget = result.target;
    return report(result);
  } catch (const failure& reason) {
    produced_count_ = 0;
    last_error_ = reason.description();
    throw;
  }
}

std::span<const ProducedFile> K19FPWObj::produced_files() const {
  return {produced_.data(), static_cast<std::size_t>(produced_count_)};
}

void K19FPWObj::batch(std::vector<std::u16string> documents) {
  batch_ = std::move(documents);
  folders_with_sides_.clear();
}

// Runs a preparation. Its failures are told by its result alone; an interruption is raised.
bool K19FPWObj::prepare(bool (K19FPWObj::*preparation)()) {
  const std::u16string source = produced_[0].file_name;
  bool prepared = false;
  try {
    refuse_twin(source);
    if (source_type_ == kMifDocument) keep_backup(source);
    FolderRun run(source, observer_.report());
    prepared = (this->*preparation)();
    if (prepared) run.commit();
  } catch (const failure& reason) {
    prepared = false;
    if (reason.is(FailureNumber::kInterrupted)) {
      produced_count_ = 0;
      throw;
    }
    observer_.tell({reason.description()});
  }
  if (!prepared) produced_count_ = 0;
  return prepared;
}

// Made before anything touches the document; it stays whatever follows.
void K19FPWObj::keep_backup(const std::u16string& document) {
  const std::u16string backup = document + u".kavo.bak";
  FolderRun run(document, observer_.report());
  copy_file(document, backup);
  run.commit();
  backup_name_ = backup;
}

bool K19FPWObj::PrepareHTML() {
  const std::u16string source = produced_[0].file_name;
  clsASP2HTML scripts;
  scripts.Progress([&](std::int16_t percent) { observer_.tell_progress(source, percent / 2); });
  scripts.ASPFile(source);
  page_origin_ = {};
  scripts.follow(&page_origin_.protected_page, &page_origin_.script);
  const std::int32_t protection = scripts.ASP2HTML();
  observer_.tell_all_after_heading(scripts.ErrorList());
  if (protection != 0) return false;
  produced_[0] = {scripts.HTMFile(), kHtmlPage, u""};
  fill_empty_script_file(scripts.SCRFile());
  produced_[1] = {scripts.SCRFile(), kPlainText, u""};
  produced_count_ = 2;

  clsHTMLValidate validation;
  validation.Progress([&](std::int16_t percent) { observer_.tell_progress(source, 50 + percent / 2); });
  validation.Filename(produced_[0].file_name);
  if (html_tags_) validation.Tags(*html_tags_);
  validation.ends_in_script(scripts.ends_in_script());
  std::optional<LineIndex> lines;  // of the source, which is read for it when there is something to tell
  validation.origin([&](std::uint64_t place) {
    if (!lines) lines.emplace(source);
    return lines->place_of(page_origin_.of_protected_page(place));
  });
  validation.follow(&page_origin_.repair);
  const std::int32_t result = validation.HTMLValidate();
  observer_.tell_all_after_heading(validation.ErrorList());
  return result <= 0;
}

bool K19FPWObj::PrepareMIF() {
  const std::u16string source = produced_[0].file_name;
  clsMIFUtilities mif;
  mif.Progress([&](std::int16_t percent) { observer_.tell_progress(source, percent); });
  mif.StartBatch();
  // Beside the document, where rebuilding looks for them, also when it is named without its folder.
  const TudName place(source);
  mif.IndexFile(mif_side_file(place, kMifSides[0]));
  mif.XrefFile(mif_side_file(place, kMifSides[1]));
  mif.VarFile(mif_side_file(place, kMifSides[2]));
  const std::vector<std::u16string> sides{mif.IndexFile(), mif.XrefFile(), mif.VarFile()};
  const std::u16string folder = folder_of(source);
  const bool has_sides = std::ranges::find(folders_with_sides_, folder) != folders_with_sides_.end();
  bool extracted = false;
  std::vector<std::u16string> book(1, source);
  if (!has_sides) book = book_of(source);
  for (const std::u16string& document : book) {
    mif.MIFFile(document);
    mif.Extract();
    if (document == source) extracted = mif.extracted();
  }
  const bool written = extracted && (has_sides || mif.EndBatch() == 0);
  observer_.tell_all(mif.ErrorList());
  if (!written) return false;
  if (has_sides) return true;
  for (std::size_t i = 0; i < sides.size(); ++i) produced_[i + 1] = {sides[i], kMifDocument, u""};
  produced_count_ = 4;
  if (!batch_.empty()) folders_with_sides_.push_back(folder);
  return true;
}

// The MIF documents of the batch in the folder of one of them, that one alone for a document of no batch.
std::vector<std::u16string> K19FPWObj::book_of(const std::u16string& document) const {
  std::vector<std::u16string> book;
  for (const std::u16string& other : batch_)
    if (FileTypeOf(other) == kMifDocument && equal_ignoring_case(folder_of(other), folder_of(document)))
      book.push_back(other);
  if (std::ranges::find(book, document) == book.end()) return {document};
  return book;
}

std::int32_t K19FPWObj::report(const TranslationResult& result) {
  last_error_.clear();
  if (result.error == kNoError) return kNoError;
  produced_count_ = 0;
  last_error_ = translation_error_text(result);
  if (quiet_ == 0) ports().desktop->message_box(last_error_, u"KAVO", MessageIcon::kExclamation);
  return result.error;
}

}  // namespace kavo
