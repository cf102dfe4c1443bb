#include "workflow/set_update.h"

#include <algorithm>

#include "common/checksum.h"
#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "driver/companions.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

std::u16string path_text(std::u16string_view path) { return to_utf16(path_to_host(path)); }

std::u16string language_pair(std::string_view source, std::string_view target) {
  return to_utf16(std::string(source) + " to " + std::string(target));
}

// The files that the preparation writes besides bilingual documents. The document is one of them, because preparation
// changes a MIF document.
std::vector<std::u16string> files_made_of(const std::u16string& document) {
  std::vector<std::u16string> files{document};
  switch (file_type_row(kind_of_document(document).type).preparation) {
    case Preparation::kScripts: {
      PageNames page{.page = document, .html = {}, .script = {}};
      complete_from_page(page);
      files.insert(files.end(), {page.html, page.script});
      break;
    }
    case Preparation::kHiddenTexts:
      for (const std::u16string_view side : kMifSides) files.push_back(mif_side_file(folder_of(document), side));
      break;
    case Preparation::kNone: {
      const std::u16string form = translated_form_of(document);
      files.push_back(object_file_of(form.empty() ? document : form));
      break;
    }
  }
  return files;
}

}  // namespace

TranslatedFolders::TranslatedFolders(std::u16string source_language, std::u16string target_language,
                                     std::vector<std::u16string> folders)
    : source_language_(std::move(source_language)),
      target_language_(std::move(target_language)),
      folders_(std::move(folders)) {
  for (const std::u16string& folder : folders_) {
    // The names are sorted, so that on every system the same one of equally good translations is taken.
    std::vector<std::u16string> names = ports().files->find(folder + u"*_" + target_language_ + u".tud");
    std::ranges::sort(names);
    for (const std::u16string& name : names) names_.push_back(folder + name);
  }
}

TextMemory& TranslatedFolders::documents() {
  if (documents_) return *documents_;
  documents_ = std::make_unique<TextMemory>(text_units_of(to_utf8(source_language_)));
  for (const std::u16string& name : names_)
    if (!current_ || !current_->contains(ports().files->absolute(name))) add_document(name);
  if (current_)
    for (const auto& [path, document] : *current_) add_translations(*documents_, document.units);
  return *documents_;
}

void TranslatedFolders::add_document(const std::u16string& path) {
  try {
    const OldDocument document = read_old_document(path);
    if (has_languages_of(document.header, to_utf8(source_language_), to_utf8(target_language_)))
      add_translations(*documents_, document.units);
  } catch (const failure& reason) {
    messages_.push_back(
        {path_text(path) + u" cannot be read, so its translations are not used: " + reason.description()});
  }
}

TextMemory& TranslatedFolders::removed() {
  if (removed_) return *removed_;
  auto removed = std::make_unique<TextMemory>(text_units_of(to_utf8(source_language_)));
  for (const std::u16string& folder : folders_) {
    const std::u16string file = folder + std::u16string(kRemovedTexts);
    if (!ports().files->info(file)) continue;
    try {
      read_tmx(file, to_utf8(source_language_), to_utf8(target_language_),
               [&](const TmxUnit& unit) { removed->add(unit.source, unit.target, unit.is_reviewed); });
    } catch (const failure& reason) {
      throw failure(reason.number(),
                    path_text(file) + u" holds translations of earlier texts and cannot be read: " +
                        reason.description() +
                        u". Nothing is changed; repair it, or move it away to continue without it",
                    reason.source());
    }
  }
  removed_ = std::move(removed);
  return *removed_;
}

void TranslatedFolders::keep_removed(const std::u16string& folder, std::vector<TmxUnit> units) {
  if (units.empty()) return;
  const TextMemory& known = removed();
  std::erase_if(units, [&](const TmxUnit& unit) {
    return known.has(unit.source, unit.target) || !removed_now_.emplace(unit.source, unit.target).second;
  });
  if (!units.empty())
    append_to_tmx(folder + std::u16string(kRemovedTexts), to_utf8(source_language_), to_utf8(target_language_), units);
}

SetUpdate::SetUpdate(TranslatedFolders& known, const std::u16string& document, bool replaces_others)
    : known_(known), made_files_(files_made_of(document)) {
  const std::string source_language = to_utf8(known.source_language());
  const std::string target_language = to_utf8(known.target_language());
  for (const std::u16string& name : bilingual_documents_of(document, known.target_language())) {
    const std::u16string tud = ports().files->absolute(name);
    if (!ports().files->info(tud)) continue;
    const auto refuse = [&](const std::u16string& reason) {
      throw failure(FailureNumber::kFileAlreadyExists,
                    path_text(tud) + u" exists and " + reason + u". Nothing is changed; --overwrite replaces it");
    };
    try {
      OldDocument old = read_old_document(tud);
      const TudHeader& header = old.header;
      const std::u16string own_name =
          tud_name_of(folder_of(tud) + core_file_name(header.original), known.target_language());
      if (!equal_ignoring_case(own_name, tud)) {
        if (!replaces_others) refuse(u"was made from another document: " + to_utf16(header.original));
      } else if (!has_languages_of(header, source_language, target_language)) {
        if (!replaces_others)
          refuse(u"translates from " + language_pair(header.source_language, header.target_language));
      } else {
        old_.emplace(tud, std::move(old));
      }
    } catch (const failure& reason) {
      if (reason.is(FailureNumber::kFileAlreadyExists)) throw;
      // Only what is known to be damaged may be replaced. Anything else may contain translations.
      if (!reason.is(FailureNumber::kInvalidCall))
        throw failure(reason.number(),
                      path_text(tud) + u" cannot be read: " + reason.description() +
                          u". Nothing is changed, because it may hold translations: make it readable, or move it away",
                      reason.source());
      if (!replaces_others) refuse(u"cannot be read: " + reason.description());
      known_.add_message(path_text(tud) + u" is replaced, because it cannot be read: " + reason.description());
    }
  }
  if (has_documents()) sums_before_ = sums();
  known_.current(&old_);
}

SetUpdate::Sums SetUpdate::sums() const {
  Sums sums;
  for (const std::u16string& file : made_files_) {
    const auto info = ports().files->info(file);
    sums.push_back(info && !info->is_folder ? std::optional(checksum_of_file(file)) : std::nullopt);
  }
  return sums;
}

bool SetUpdate::is_unchanged(std::span<const ProducedFile> produced) const {
  return has_documents() && !produced.empty() && sums() == sums_before_ &&
         std::ranges::all_of(produced, [&](const ProducedFile& file) {
           const auto found = old_.find(ports().files->absolute(file.tud_name));
           return found != old_.end() && says_the_same(found->first, found->second);
         });
}

SetUpdateReport SetUpdate::kept() const {
  SetUpdateReport report;
  report.is_update = true;
  for (const auto& [tud, document] : old_) report.counts.kept += document.units.size();
  return report;
}

SetUpdateReport SetUpdate::apply(std::span<const ProducedFile> produced) {
  SetUpdateReport report;
  // There are no old documents and no translations, so nothing needs to be read.
  if (!has_documents() && known_.is_empty()) return report;
  for (const ProducedFile& file : produced) {
    const std::u16string tud = ports().files->absolute(file.tud_name);
    const auto found = old_.find(tud);
    DocumentUpdate update = update_document(tud, found == old_.end() ? nullptr : &found->second, known_);
    report.counts += update.counts;
    known_.keep_removed(folder_of(tud), std::move(update.removed));
  }
  report.is_update = !old_.empty() || report.counts.moved + report.counts.similar != 0;
  return report;
}

}  // namespace kavo
