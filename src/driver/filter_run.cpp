#include "driver/filter_run.h"

#include <algorithm>
#include <vector>

#include "common/checksum.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "driver/document_files.h"
#include "driver/filter_table.h"
#include "driver/office_preparation.h"
#include "driver/rtf_preparation.h"
#include "driver/tud_component.h"
#include "driver/tud_name.h"
#include "platform/failure.h"
#include "platform/fnv_hash.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::int32_t kFirstFilterFailure = 200;
constexpr std::int32_t kNeedsNoTranslation = 1;
constexpr std::int32_t kWholeMatch = 100;

// The common mark of the documents of one preparation: the checksums of the files that belong together. "" for a
// document that is alone.
std::u16string mark_of(std::span<const ProducedFile> files) {
  std::vector<std::u16string> set;
  for (const ProducedFile& file : files) set.push_back(file.file_name);
  // The MIF documents of a folder share their side files, however many of them are prepared.
  if (!files.empty() && files[0].file_type == kMifDocument) {
    set.clear();
    for (const std::u16string_view side : kMifSides) set.push_back(mif_side_file(folder_of(files[0].file_name), side));
  }
  // If one of them is missing, there is no set. A step that needs the set reports that.
  if (set.size() < 2 || !std::ranges::all_of(set, is_file)) return u"";
  std::uint64_t mark = kFnvSeed;
  for (const std::u16string& file : set) mark = fnv_add(mark, std::to_string(checksum_of_file(file)));
  return formatted(u"{}", mark);
}

// The documents of a preparation.
struct DocumentSet {
  std::u16string mark;
  std::u16string author_document;  // full path
  std::span<const ProducedFile> files;
};

// Facts that the filter cannot see in the file itself: where its lines are in the author's file, and for a page and its
// script file the path of the other one. "name=value" on each line.
std::u16string facts_of(const ProducedFile& file, const DocumentSet& set, const FolderRun& run) {
  std::u16string facts;
  if (!file.author_lines.empty()) facts += u"author-lines=" + to_utf16(file.author_lines) + u"\n";
  if (set.files.size() != 2 || set.files[0].file_type != kHtmlPage) return facts;
  const ProducedFile& other = set.files[&file == &set.files[0] ? 1 : 0];
  return facts + u"companion=" + run.path_to_read(other.file_name) + u"\n";
}

bool is_read_as_copy(std::int32_t type) {
  return type == kRtfDocument || file_type_row(type).form != TranslatedForm::kItself;
}

// The file that the filter reads instead of a produced file.
std::u16string what_is_read(ProducedFile& file, const RunLanguages& languages, FolderRun& run) {
  const std::u16string form = file.form.empty() ? in_translated_form(file.file_name, run) : file.form;
  const bool is_form = form != file.file_name;
  if (is_form) file.form = form;
  if (is_form && languages.keeps_form) copy_file(form, translated_form_of(file.file_name));
  const bool is_rtf = file.file_type == kRtfDocument || file_type_row(file.file_type).form == TranslatedForm::kRtf;
  if (!is_rtf) return is_form ? form : run.path_to_read(form);
  const std::u16string own = is_form ? translated_form_of(file.file_name) : file.file_name;
  return without_objects(form, object_file_of(own), languages.replaces_objects, run);
}

void convert(ProducedFile& file, const RunLanguages& languages, const DocumentSet& set, const RunObserver& observer) {
  const FilterInfo& filter = filter_table(file.file_type);
  if (filter.filter_name.empty())
    throw failure(FailureNumber::kInvalidCall,
                  u"No filter is installed for this type of file: " + to_utf16(file_type_row(file.file_type).label));
  refuse_twin(file.file_name);
  const std::u16string tud = tud_name_of(file.file_name, languages.target);
  const std::u16string skeleton = skeleton_name_of(tud);
  // Filters only see real files.
  FolderRun run(file.file_name);
  const std::u16string made = run.path_to_write(tud);
  const std::u16string read = what_is_read(file, languages, run);
  std::vector<Argument> arguments{by_value(read),
                                  by_value(made),
                                  by_value(run.path_to_write(skeleton)),
                                  by_value(languages.source),
                                  by_value(languages.source_code_page),
                                  by_value(languages.target),
                                  by_value(languages.target_code_page),
                                  by_value(filter.filter_name),
                                  by_value(std::u16string(u"Paragraph"))};
  const bool keeps_set = filter_catalogue().has_member(u"ConvertInSet");
  if (keeps_set) {
    arguments.push_back(by_value(set.mark));
    // The filter may not read the author's own file.
    const bool is_own = set.author_document.empty() && is_read_as_copy(file.file_type);
    arguments.push_back(by_value(is_own ? ports().files->absolute(file.file_name) : set.author_document));
    const std::u16string options = facts_of(file, set, run) + languages.filter_options;
    if (!options.empty()) arguments.push_back(by_value(options));
  }
  filter_catalogue().invoke(keeps_set ? u"ConvertInSet" : u"Convert", arguments);
  observer.tell_all(filter_messages());
  // The only plain text that a preparation produces beside other files is the script file of a server page.
  if (file.file_type == kPlainText && ascii_lower(file.file_name).ends_with(u".scr")) LockScriptSegments(made);
  run.commit();
  file.tud_name = tud;
}

FilterRun failed_at(std::size_t index, const failure& reason) {
  return {kFirstFilterFailure + static_cast<std::int32_t>(index),
          FolderRun::without_scratch_folder(reason.description())};
}

}  // namespace

FilterRun convert_produced_files(std::span<ProducedFile> files, const RunLanguages& languages,
                                 std::u16string_view author_document, const RunObserver& observer) {
  FilterRun result;
  std::size_t i = 0;
  try {
    // The documents take their names together. When a file fails, the documents of the files before it still take
    // theirs.
    FolderRun run(files.empty() ? u"." : files[0].file_name, observer.report());
    try {
      const DocumentSet set{mark_of(files), author_document.empty() ? u"" : ports().files->absolute(author_document),
                            files};
      for (; i < files.size(); ++i) {
        observer.tell_converting(files[i].file_name, static_cast<int>(100 * i / files.size()));
        convert(files[i], languages, set, observer);
      }
    } catch (const failure& reason) {
      result = failed_at(i, reason);
    }
    run.commit();
  } catch (const failure& reason) {
    for (ProducedFile& file : files) file.tud_name.clear();
    return failed_at(0, reason);
  }
  return result;
}

bool ContainsQuotedText(std::u16string_view text) {
  return std::count(text.begin(), text.end(), u'"') >= 2 || std::count(text.begin(), text.end(), u'\'') >= 2;
}

void LockScriptSegments(std::u16string_view tud) {
  TudComponent document;
  document.open(tud);
  const std::int32_t count = document.segment_count();
  for (std::int32_t number = 1; number <= count; ++number) {
    const auto segment = document.segment(number);
    if (ContainsQuotedText(segment.source)) continue;
    document.set_segment(number, segment.target, kNeedsNoTranslation, kWholeMatch);
  }
  document.close();
}

}  // namespace kavo
