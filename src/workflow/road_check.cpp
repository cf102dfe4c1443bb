#include "workflow/road_check.h"

#include <algorithm>
#include <deque>
#include <memory>

#include "common/clsCommon.h"
#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/scratch_names.h"
#include "driver/filter_run.h"
#include "driver/utf16_page.h"
#include "html/scripts/clsASP2HTML.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/coded_text.h"
#include "suite/document/pseudo_translation.h"
#include "workflow/form_check.h"
#include "workflow/message_text.h"
#include "workflow/scratch_registry.h"
#include "workflow/work_folder.h"

namespace kavo {
namespace {

// One text of a finding as people read it.
std::string shown(std::string_view coded) { return to_utf8(to_host_text(coded)); }

class RoadCheck {
 public:
  RoadCheck(K19FPWObj& driver, const std::u16string& document, MifBook* book, const RoadLanguages& languages,
            RoadResult& result)
      : driver_(driver),
        document_(document),
        name_(file_name_of(document)),
        book_(book),
        languages_(languages),
        result_(result) {}

  void run(const ProgressEvent::Handler& progress) {
    // Rebuilding stores the font map of the document's folder, which is a scratch folder here.
    ScratchRegistry registry(*ports().registry);
    const PortsScope scope;
    ports().registry = &registry;
    const std::int32_t type = kind_of_document(document_).type;
    if (type == kUnknownFile) throw failure(FailureNumber::kInvalidCall, u"This type of file is not known");
    result_.has_form = !translated_form_of(document_).empty();
    result_.is_page = type == kHtmlPage || type == kServerPage;
    progress(0);
    const Copy plain = copy_to("plain", document_);
    // The page's language follows the target language, so that nothing changes only when both are the same.
    const std::vector<ProducedFile> produced =
        prepare(plain.path, {.source = languages_.source, .target = languages_.source, .keeps_form = true});
    progress(25);
    check_unchanged(plain, produced);
    progress(40);
    check_translated();
    progress(100);
  }

 private:
  struct Copy {
    std::u16string folder;
    std::u16string path;
  };

  Copy copy_to(std::string_view folder_name, const std::u16string& document) {
    Copy copy;
    copy.folder = folder_.make(folder_name);
    folders_.push_back(copy.folder + u"\\");
    copy.path = folders_.back() + name_;
    copy_file(document, copy.path);
    return copy;
  }

  std::vector<ProducedFile> prepare(const std::u16string& document, const RunLanguages& languages) {
    const RunObserver observer{{}, [&](const Message& message) {
                                 result_.messages.push_back(message);
                                 result_.messages.back().text = with_own_folder(message.text);
                               }};
    PreparationBatch batch;
    ConvertedDocument converted = prepare_and_convert(command_request(document), batch, languages, observer);
    // The converter has already given a better reason.
    if (converted.preparation.result != 0)
      throw failure(FailureNumber::kInvalidCall, result_.messages.empty() ? u"The document cannot be prepared" : u"");
    if (converted.conversion.result != 0)
      throw failure(FailureNumber::kInvalidCall, with_own_folder(converted.conversion.reason));
    origin_ = std::move(converted.preparation.origin);
    return std::move(converted.preparation.files);
  }

  // The user knows the document, not its copies. The result is not a path that the run has used, so the command would
  // not convert it to the host's form. It is converted here.
  std::u16string with_own_folder(std::u16string text) const {
    const auto host = [](std::u16string_view path) { return to_utf16(path_to_host(path)); };
    for (const std::u16string& folder : folders_) text = clsCommon().SandR(text, folder, host(folder_of(document_)));
    const std::u16string scratch = std::u16string(kScratchFolder) + u"\\";
    return clsCommon().SandR(text, scratch, host(scratch));
  }

  // Runs a step whose failure is a result of the check.
  template <class Step>
  void guarded(std::optional<Message>& reason, Step&& step) const {
    try {
      step();
    } catch (const failure& thrown) {
      reason = Message{with_own_folder(thrown.description())};
      if (reason->text.empty() && !result_.messages.empty()) reason = result_.messages.back();
    }
  }

  void check_unchanged(const Copy& plain, const std::vector<ProducedFile>& produced) {
    guarded(result_.unchanged_failure, [&] {
      if (result_.has_form) {
        result_.difference = form_difference(plain.path, produced[0].tud_name);
        return;
      }
      const std::u16string repaired = result_.is_page ? repaired_page(plain, produced) : u"";
      const std::u16string rebuilt = rebuild_document(driver_, produced[0].tud_name);
      result_.difference = first_difference(document_, rebuilt);
      if (!result_.difference || repaired.empty() || !first_difference(document_, repaired)) return;
      result_.was_repaired = true;
      result_.difference = first_difference(repaired, rebuilt);
      if (!result_.difference) return;
      const LinePlace place = source_place(origin_.of_restored_page(result_.difference->position));
      result_.difference->line = place.line;
      result_.difference->column = place.column;
    });
  }

  // The page with its repairs and its scripts, made without any filter.
  std::u16string repaired_page(const Copy& plain, const std::vector<ProducedFile>& produced) {
    const std::u16string folder = folder_.make("repaired");
    const auto copied = [&](const std::u16string& file) {
      std::u16string copy = folder + u"\\" + file_name_of(file);
      copy_file(file, copy);
      return copy;
    };
    std::u16string page = copied(produced[0].file_name);
    unsigned utf16 = 0;
    if (is_utf16_page(page)) {
      const std::u16string utf8 = folder + u"\\utf8-" + file_name_of(page);
      utf16 = write_as_utf8(page, utf8);
      page = utf8;
    }
    clsASP2HTML scripts;
    scripts.HTMFile(page);
    scripts.SCRFile(copied(produced[1].file_name));
    scripts.ASPFile(folder + u"\\" + file_name_of(plain.path));
    if (scripts.HTML2ASP() != 0) {
      Message reason = scripts.ErrorList().back();
      reason.text = with_own_folder(std::move(reason.text));
      throw failure(FailureNumber::kInvalidCall,
                    to_utf16("The scripts cannot be restored: " + message_text(reason, path_to_host(document_))));
    }
    if (utf16 != 0) turn_into_utf16(scripts.ASPFile(), utf16);
    return scripts.ASPFile();
  }

  void check_translated() {
    const RunLanguages languages{languages_.source, languages_.target};
    const std::size_t message_count = result_.messages.size();
    guarded(result_.translated_failure, [&] {
      const std::vector<ProducedFile> first = prepare(copy_to("translated", document_).path, languages);
      const PageOrigin origin = origin_;  // the next preparation has another one
      ProgressEvent progress;
      for (const ProducedFile& file : first) pseudo_translate(file.tud_name, progress);
      // The documents are read before the rebuild, which need not keep them.
      std::vector<std::unique_ptr<BilingualDocument>> wanted;
      for (const ProducedFile& file : first) {
        wanted.push_back(std::make_unique<BilingualDocument>(file.tud_name));
        result_.texts += wanted.back()->size();
      }
      result_.documents = wanted.size();
      const std::u16string rebuilt = rebuild_document(driver_, first[0].tud_name);
      if (book_ != nullptr)
        result_.book_difference = first_difference(rebuilt, book_->rebuild(driver_, document_, languages));
      // The texts of the rebuilt document are in the target language.
      const std::vector<ProducedFile> second =
          prepare(copy_to("again", rebuilt).path, {languages_.target, languages_.target});
      for (std::size_t i = 0; i < first.size() && i < second.size(); ++i)
        compare(first[i], *wanted[i], BilingualDocument(second[i].tud_name), origin);
    });
    // The untranslated document has already caused the same messages.
    result_.messages.resize(std::min(message_count, result_.messages.size()));
  }

  void compare(const ProducedFile& file, const BilingualDocument& wanted, const BilingualDocument& given,
               const PageOrigin& origin) {
    std::vector<std::string_view> expected(wanted.size());
    for (std::size_t i = 0; i < expected.size(); ++i) expected[i] = wanted.segment(i).target;
    std::vector<std::string_view> found(given.size());
    for (std::size_t i = 0; i < found.size(); ++i) found[i] = given.segment(i).source;
    std::optional<LineIndex> lines;  // of the prepared page or script file
    if (result_.has_form) {
      keep_plain(expected);
      keep_plain(found);
    }
    for (const TextFinding& difference : compare_texts(expected, found)) {
      RoadFinding finding;
      finding.change = difference.change;
      if (!result_.is_page && file_name_of(file.file_name) != name_) finding.side_file = file_name_of(file.file_name);
      if (difference.place != TextFinding::kNone) {
        const BilingualSegment segment = wanted.segment(difference.place);
        finding.place = {segment.line, segment.column};
      }
      if (result_.is_page) {
        if (!lines) lines.emplace(file.file_name);
        const std::uint64_t place = lines->position_of(finding.place);
        finding.place = source_place(file.file_type == kPlainText ? origin.of_script(place) : origin.of_page(place));
      }
      if (difference.expected != TextFinding::kNone) finding.expected = shown(expected[difference.expected]);
      if (difference.found != TextFinding::kNone) finding.found = shown(found[difference.found]);
      if (difference.change == TextChange::kBrokenCodes) {
        finding.problem = code_problem(expected[difference.expected], found[difference.found]);
        if (finding.problem.empty()) finding.problem = "the codes are in other places";
      }
      result_.findings.push_back(std::move(finding));
    }
  }

  // An Office program cuts a text into runs as it likes.
  void keep_plain(std::vector<std::string_view>& texts) {
    for (std::string_view& text : texts) text = plain_texts_.emplace_back(plain_text(text));
  }

  LinePlace source_place(std::uint64_t position) {
    if (!source_lines_) source_lines_.emplace(document_);
    return source_lines_->place_of(position);
  }

  K19FPWObj& driver_;
  PageOrigin origin_;  // of the page that was prepared last
  const std::u16string& document_;
  std::u16string name_;
  MifBook* book_;
  const RoadLanguages& languages_;
  RoadResult& result_;
  WorkFolder folder_;
  std::vector<std::u16string> folders_;  // of the copies
  std::optional<LineIndex> source_lines_;
  std::deque<std::string> plain_texts_;
};

}  // namespace

void check_road(K19FPWObj& driver, const std::u16string& document, MifBook* book, const RoadLanguages& languages,
                const ProgressEvent::Handler& progress, RoadResult& result) {
  RoadCheck(driver, document, book, languages, result).run(progress);
}

}  // namespace kavo
