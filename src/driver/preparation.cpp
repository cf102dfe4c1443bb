#include "driver/preparation.h"

#include <algorithm>

#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/line_index.h"
#include "common/line_map.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/program_settings.h"
#include "driver/document_files.h"
#include "driver/step_failures.h"
#include "driver/utf16_page.h"
#include "formats/script/language.h"
#include "html/repair/clsHTMLValidate.h"
#include "html/scripts/clsASP2HTML.h"
#include "mif/clsMIFUtilities.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

enum PreparationCode : std::int32_t { kPrepared = 0, kHtmlFailed = 3, kMifFailed = 4 };

std::u16string real_folder_of(const std::u16string& path) { return folder_of(ports().files->absolute(path)); }

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

class PreparationRun {
 public:
  PreparationRun(const PreparationRequest& request, PreparationBatch& batch, const RunObserver& observer)
      : source_(request.document),
        html_tags_(request.html_tags),
        kind_(request.kind.value_or(DocumentKind{FileTypeOf(source_)})),
        repairs_(request.repairs && !kind_.is_fragment),
        keeps_branches_(request.keeps_branches),
        batch_(batch),
        observer_(observer) {}

  PreparationResult run() {
    result_.files.push_back({source_, kind_.type, u""});
    switch (file_type_row(kind_.type).preparation) {
      case Preparation::kScripts:
        run_step(kHtmlFailed, &PreparationRun::PrepareHTML);
        break;
      case Preparation::kHiddenTexts:
        run_step(kMifFailed, &PreparationRun::PrepareMIF);
        break;
      case Preparation::kNone:
        break;
    }
    return std::move(result_);
  }

 private:
  void run_step(std::int32_t failure_code, void (PreparationRun::*step)()) {
    try {
      refuse_twin(source_);
      if (failure_code == kMifFailed) keep_backup();
      FolderRun run(source_, observer_.report());
      run_ = &run;
      (this->*step)();
      run.commit();
      return;
    } catch (const reported_failure&) {
      // The observer has received the reasons.
    } catch (const failure& reason) {
      observer_.tell({reason.description()});
    }
    result_.result = failure_code;
    result_.files.clear();
  }

  // The backup is made before anything touches the document, and stays whatever happens.
  void keep_backup() const {
    FolderRun run(source_, observer_.report());
    copy_file(source_, backup_name_of(source_));
    run.commit();
  }

  void PrepareHTML() {
    if (!is_utf16_page(source_)) return prepare_page(source_);
    const std::u16string copy = run_->scratch_path(file_name_of(source_));
    const unsigned code_page = write_as_utf8(source_, copy);
    prepare_page(copy);
    turn_into_utf16(result_.files[0].file_name, code_page);
    mark_as_utf8(result_.files[1].file_name);
    result_.origin = {};  // its places are in the copy, not in the source
  }

  // `page` is the source, or a copy of it in another coding.
  void prepare_page(const std::u16string& page) {
    PageNames names;
    names.page = source_;
    complete_from_page(names);
    clsASP2HTML scripts;
    scripts.Progress([&](std::int16_t percent) { observer_.tell_progress(source_, percent / 2); });
    scripts.ASPFile(page);
    scripts.HTMFile(names.html);
    scripts.SCRFile(names.script);
    scripts.follow(&result_.origin.protected_page, &result_.origin.script);
    const std::int32_t protection = scripts.ASP2HTML();
    observer_.tell_all_after_heading(scripts.ErrorList());
    if (protection != 0) throw reported_failure();
    fill_empty_script_file(scripts.SCRFile());
    result_.files = {{scripts.HTMFile(), kHtmlPage, u""}, {scripts.SCRFile(), kPlainText, u""}};
    if (!repairs_) {
      result_.files[0].author_lines = LineMap(scripts.HTMFile(), result_.origin.protected_page, page).text();
      return;
    }

    clsHTMLValidate validation;
    validation.Progress([&](std::int16_t percent) { observer_.tell_progress(source_, 50 + percent / 2); });
    validation.Filename(scripts.HTMFile());
    if (html_tags_) validation.Tags(*html_tags_);
    validation.ends_in_script(scripts.ends_in_script());
    std::optional<LineIndex> lines;  // of the page, which is read for it when there is something to report
    const auto place_in_page = [&](std::uint64_t position) {
      if (!lines) lines.emplace(page);
      return lines->place_of(position);
    };
    if (keeps_branches_)
      validation.scripts(scripts.SCRFile(), script::language_of_page(to_utf8(ascii_lower(extension_of(source_)))),
                         [&](std::uint64_t place) { return place_in_page(result_.origin.of_script(place)); });
    validation.origin([&](std::uint64_t place) { return place_in_page(result_.origin.of_protected_page(place)); });
    validation.follow(&result_.origin.repair);
    const std::int32_t repair = validation.HTMLValidate();
    observer_.tell_all_after_heading(validation.ErrorList());
    const PageOrigin& origin = result_.origin;
    const CopyTrail both = trail_of_both(origin.protected_page, origin.repair);
    result_.files[0].author_lines = LineMap(scripts.HTMFile(), both, page).text();
    if (repair > 0) throw reported_failure();
  }

  void PrepareMIF() {
    clsMIFUtilities mif;
    mif.Progress([&](std::int16_t percent) { observer_.tell_progress(source_, percent); });
    mif.StartBatch();
    // The side files go beside the document, where rebuilding looks for them, even if it is named without its folder.
    const std::u16string folder = folder_of(source_);
    mif.IndexFile(mif_side_file(folder, kMifSides[0]));
    mif.XrefFile(mif_side_file(folder, kMifSides[1]));
    mif.VarFile(mif_side_file(folder, kMifSides[2]));
    const std::vector<std::u16string> sides{mif.IndexFile(), mif.XrefFile(), mif.VarFile()};
    std::vector<std::u16string> book = batch_.book_of(source_);
    const bool collects = !book.empty();
    if (!collects) book.push_back(source_);
    bool is_extracted = false;
    for (const std::u16string& document : book) {
      mif.MIFFile(document);
      mif.Extract();
      if (document == source_) is_extracted = mif.extracted();
    }
    const bool is_written = is_extracted && (!collects || mif.EndBatch() == 0);
    observer_.tell_all(mif.ErrorList());
    if (!is_written) throw reported_failure();
    if (!collects) return;
    for (const std::u16string& side : sides) result_.files.push_back({side, kMifDocument, u""});
    batch_.add_side_files_of(source_);
  }

  const std::u16string source_;
  const std::optional<std::u16string>& html_tags_;
  const DocumentKind kind_;
  const bool repairs_;
  const bool keeps_branches_;
  PreparationBatch& batch_;
  const RunObserver& observer_;
  FolderRun* run_ = nullptr;  // the run of the current step
  PreparationResult result_;
};

constexpr std::u16string_view kRepair = u"Repair";

}  // namespace

PreparationRequest command_request(const std::u16string& document) {
  return {.document = document, .kind = kind_of_document(document), .repairs = repairs_pages(), .keeps_branches = true};
}

bool repairs_pages() { return kPageSettings.get(kRepair, u"1") != u"0"; }
void store_repairs_pages(bool value) { kPageSettings.save(kRepair, value ? u"1" : u"0"); }

std::vector<std::u16string> PreparationBatch::book_of(const std::u16string& document) const {
  const std::u16string folder = real_folder_of(document);
  if (std::ranges::find(folders_with_sides_, folder) != folders_with_sides_.end()) return {};
  std::vector<std::u16string> book;
  for (const std::u16string& other : documents_)
    if (FileTypeOf(other) == kMifDocument && equal_ignoring_case(real_folder_of(other), folder)) book.push_back(other);
  if (std::ranges::find(book, document) == book.end()) return {document};
  return book;
}

void PreparationBatch::add_side_files_of(const std::u16string& document) {
  if (!documents_.empty()) folders_with_sides_.push_back(real_folder_of(document));
}

PreparationResult prepare_document(const PreparationRequest& request, PreparationBatch& batch,
                                   const RunObserver& observer) {
  return PreparationRun(request, batch, observer).run();
}

}  // namespace kavo
