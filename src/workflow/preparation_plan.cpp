#include "workflow/preparation_plan.h"

#include <algorithm>
#include <map>
#include <set>

#include "common/checksum.h"
#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/same_file.h"
#include "driver/companions.h"
#include "driver/document_files.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/tud_format.h"

namespace kavo {
namespace {

// The names that a document needs for itself in its folder. Side files are not among them: all MIF documents of a
// folder share them.
std::vector<std::u16string> names_taken_by(const std::u16string& document,
                                           const std::vector<std::u16string>& languages) {
  std::vector<std::u16string> names{document};
  if (file_type_row(kind_of_document(document).type).preparation == Preparation::kScripts) {
    PageNames page{.page = document, .html = {}, .script = {}};
    complete_from_page(page);
    names.insert(names.end(), {page.html, page.script});
  }
  for (const std::u16string& language : languages) names.push_back(tud_name_of(document, language));
  return names;
}

std::u16string text_of(std::u16string_view path) { return to_utf16(path_to_host(path)); }

// Preparation changes a MIF document itself and keeps a backup beside it, which is the document as it came.
std::u16string as_it_came(const PlannedDocument& planned) {
  const bool is_changed = FileTypeOf(planned.document) == kMifDocument && planned.document != planned.source;
  return is_changed ? backup_name_of(planned.document) : planned.document;
}

// A document that is damaged, or that another program made, does not name its source.
bool is_made_of(const std::u16string& tud, const std::u16string& document) {
  const std::optional<TudHeader> header = header_if_bilingual(tud);
  return header && equal_ignoring_case(core_file_name(header->set.author_document), file_name_of(document));
}

}  // namespace

std::vector<PlannedDocument> plan_preparation(const std::vector<FolderFile>& sources, std::u16string_view output_folder,
                                              const std::vector<std::u16string>& languages) {
  std::vector<PlannedDocument> plan;
  std::map<std::u16string, std::u16string, LessIgnoringCase> takers;  // by name
  for (const FolderFile& source : sources) {
    PlannedDocument planned{source.path, output_folder.empty() ? source.path : path_in(output_folder, source.relative)};
    for (const std::u16string& name : names_taken_by(planned.document, languages)) {
      const auto [taker, is_new] = takers.try_emplace(name, source.path);
      if (!is_new && taker->second != source.path)
        throw failure(FailureNumber::kFileAlreadyExists,
                      text_of(taker->second) + u" and " + text_of(source.path) + u" would both need the name " +
                          text_of(name) + u". Nothing is written: rename one, or leave one out with --exclude");
    }
    plan.push_back(std::move(planned));
  }
  return plan;
}

bool is_up_to_date(const PlannedDocument& planned, const std::vector<std::u16string>& languages) {
  const std::u16string original = as_it_came(planned);
  if (!is_file(planned.document) || !is_file(original)) return false;
  if (original != planned.source && checksum_of_file(original) != checksum_of_file(planned.source)) return false;
  const std::uint64_t checksum = checksum_of_file(planned.document);
  for (const std::u16string& language : languages) {
    const std::vector<std::u16string> documents = bilingual_documents_of(planned.document, language);
    for (const std::u16string& tud : documents)
      if (!is_file(tud) || !is_file(skeleton_name_of(tud))) return false;
    if (!is_made_of(documents.front(), planned.document) ||
        header_of(documents.front()).set.author_checksum != checksum)
      return false;
  }
  return true;
}

std::vector<PlannedDocument> leave_out_up_to_date(std::vector<PlannedDocument>& plan,
                                                  const std::vector<std::u16string>& languages,
                                                  const IsOutdated& is_outdated) {
  std::set<std::u16string, LessIgnoringCase> folders;
  for (const PlannedDocument& planned : plan) folders.insert(folder_of(ports().files->absolute(planned.document)));
  // One folder at a time, because holding several locks could block against a run that waits for one of them.
  for (const std::u16string& folder : folders) settle_folder(folder).reset();
  std::vector<bool> is_due;
  std::set<std::u16string, LessIgnoringCase> due_books;  // folders
  for (const PlannedDocument& planned : plan) {
    is_due.push_back(is_outdated(planned) || !is_up_to_date(planned, languages));
    if (is_due.back() && FileTypeOf(planned.document) == kMifDocument) due_books.insert(folder_of(planned.document));
  }
  std::vector<PlannedDocument> due, up_to_date;
  for (std::size_t i = 0; i < plan.size(); ++i) {
    const bool is_of_due_book =
        FileTypeOf(plan[i].document) == kMifDocument && due_books.contains(folder_of(plan[i].document));
    (is_due[i] || is_of_due_book ? due : up_to_date).push_back(std::move(plan[i]));
  }
  plan = std::move(due);
  return up_to_date;
}

void bring_source(const PlannedDocument& planned, bool may_replace) {
  if (planned.source == planned.document) return;
  const std::u16string& copy = planned.document;
  if (is_file(copy)) {
    if (is_same_file(planned.source, copy))
      throw failure(FailureNumber::kFileAlreadyExists,
                    text_of(copy) + u" is the source itself: the output folder must be another one");
    if (checksum_of_file(planned.source) == checksum_of_file(copy)) return;
    const std::vector<std::u16string> tuds = ports().files->find(bilingual_documents_of(copy, u"*").front());
    const bool is_ours =
        std::ranges::any_of(tuds, [&](const std::u16string& name) { return is_made_of(folder_of(copy) + name, copy); });
    if (!is_ours && !may_replace)
      throw failure(FailureNumber::kFileAlreadyExists,
                    text_of(copy) + u" exists and was not made by this command: --overwrite replaces it");
  }
  copy_file(planned.source, copy);
}

}  // namespace kavo
