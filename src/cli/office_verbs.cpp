// kavo word, powerpoint and excel ...: conversions that an Office program does, driven through automation. One program
// serves all files of a command line.
//
// A program works in the run's scratch folder, on copies of the documents that it changes, so that a conversion that
// fails leaves an older result and the document as they were.
#include <utility>
#include <vector>

#include "cli/verb.h"
#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/same_file.h"
#include "office/clsDOC2RTF.h"
#include "office/clsPPTUtil.h"
#include "office/clsXLSUtil.h"
#include "office/office_converter.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// A file that a program has written in the run's scratch folder, and the file whose place it takes.
struct Made {
  std::u16string scratch;
  std::u16string path;
};

// Nothing of the user's has changed so far, so the older files stay when the program has failed. The first one is the
// result.
Outcome outcome_of(std::int32_t result, const std::vector<Made>& made, const error_state& errors,
                   std::u16string_view program) {
  const Made& produced = made.front();
  const bool is_made = result == 0 && ports().files->info(produced.scratch);
  Outcome outcome;
  if (is_made) {
    for (const Made& file : made) replace_file(file.scratch, file.path);
    outcome.produced = {{produced.path, FileTypeOf(produced.path)}};
  } else {
    outcome.result = result == 0 ? 1 : result;
    outcome.ending = Outcome::kFailed;
    outcome.messages = {{reason_of_failure(errors, program)}};
  }
  return outcome;
}

bool is_read_only(const std::u16string& file) {
  const auto info = ports().files->info(file);
  return info && info->is_read_only;
}

// What an export makes: its result, and the document as the program saved it before exporting.
std::vector<Made> exported(Made result, Made document) {
  std::vector<Made> made{std::move(result)};
  if (!is_read_only(document.path)) made.push_back(std::move(document));
  return made;
}

std::u16string scratch_copy(const std::u16string& file, FolderRun& run) {
  std::u16string copy = run.scratch_path(file_name_of(file));
  copy_file(file, copy);
  return copy;
}

Outcome failed(std::u16string message) {
  Outcome outcome;
  outcome.result = 1;
  outcome.ending = Outcome::kFailed;
  outcome.messages = {{std::move(message)}};
  return outcome;
}

// A missing file is reported without starting a program, which takes seconds.
class OfficeVerb : public Verb {
 public:
  std::u16string workplace(const std::u16string& file) const final { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler&) final {
    if (!clsCommon().FileExists(file)) return failed(u"File not found");
    FolderRun run(file);
    Outcome outcome = convert(file, run);
    if (outcome.ending == Outcome::kDone) run.commit();
    return outcome;
  }

 protected:
  virtual Outcome convert(const std::u16string& file, FolderRun& run) = 0;
};

// A conversion into a file of its own, which replaces an older one only when asked to.
class NewFileVerb : public OfficeVerb {
 public:
  void add_options(CLI::App& app) override {
    app.add_flag("--overwrite", overwrite_, "Replace a file that has the name of the result");
  }

 protected:
  virtual std::u16string target_of(const std::u16string& file) const = 0;
  virtual Outcome convert_to(const std::u16string& target, const std::u16string& file, FolderRun& run) = 0;

 private:
  Outcome convert(const std::u16string& file, FolderRun& run) final {
    const std::u16string target = target_of(file);
    const std::u16string name = to_utf16(path_to_host(target));
    if (is_same_file(file, target))
      throw failure(FailureNumber::kInvalidCall, name + u" would be converted into itself: give it another extension");
    if (!overwrite_ && ports().files->info(target))
      throw failure(FailureNumber::kFileAlreadyExists, name + u" exists already: --overwrite replaces it");
    return convert_to(target, file, run);
  }

  bool overwrite_ = false;
};

class WordVerb : public NewFileVerb {
 public:
  std::optional<Outcome> finish() override {
    if (is_started_) converter_.EndBatch();
    return std::nullopt;
  }

 protected:
  clsDOC2RTF& converter() {
    if (!std::exchange(is_started_, true)) converter_.StartBatch();
    return converter_;
  }

 private:
  clsDOC2RTF converter_;
  bool is_started_ = false;
};

class WordToRtf final : public WordVerb {
  std::u16string target_of(const std::u16string& file) const override { return rtf_name_of(file); }
  Outcome convert_to(const std::u16string& target, const std::u16string& file, FolderRun& run) override {
    clsDOC2RTF& word = converter();
    word.DOCFile(file);
    word.RTFFile(run.scratch_path(file_name_of(target)));
    const std::int32_t result = word.DOC2RTF();
    return outcome_of(result, {{word.RTFFile(), target}}, word.errors(), kWordProgram);
  }
};

class WordToDoc final : public WordVerb {
  std::u16string target_of(const std::u16string& file) const override { return doc_name_of(file); }
  Outcome convert_to(const std::u16string& target, const std::u16string& file, FolderRun& run) override {
    clsDOC2RTF& word = converter();
    word.RTFFile(file);
    word.DOCFile(run.scratch_path(file_name_of(target)));
    const std::int32_t result = word.RTF2DOC();
    Outcome outcome = outcome_of(result, {{word.DOCFile(), target}}, word.errors(), kWordProgram);
    if (!word.losses().empty()) outcome.messages.push_back({word.losses()});
    return outcome;
  }
};

class PresentationToXml final : public NewFileVerb {
  std::u16string target_of(const std::u16string& file) const override { return xml_name_of(file); }
  Outcome convert_to(const std::u16string& target, const std::u16string& file, FolderRun& run) override {
    converter_.PPTFile(scratch_copy(file, run));
    const std::int32_t result = converter_.PPT2XML();
    return outcome_of(result, exported({converter_.XMLFile(), target}, {converter_.PPTFile(), file}),
                      converter_.errors(), kPresentationProgram);
  }

  clsPPTUtil converter_;
};

class WorkbookToXml final : public NewFileVerb {
  std::u16string target_of(const std::u16string& file) const override { return xml_name_of(file); }
  Outcome convert_to(const std::u16string& target, const std::u16string& file, FolderRun& run) override {
    converter_.XLSFile(scratch_copy(file, run));
    const std::int32_t result = converter_.XLS2XML();
    return outcome_of(result, exported({converter_.XMLFile(), target}, {converter_.XLSFile(), file}),
                      converter_.errors(), kWorkbookProgram);
  }

  clsXLSUtil converter_;
};

// Puts texts into an existing document beside their XML.
class ImportVerb : public OfficeVerb {
 protected:
  // Puts the texts of `xml` into the document beside it.
  virtual Outcome import(const std::u16string& xml, const Made& made) = 0;

 private:
  Outcome convert(const std::u16string& file, FolderRun& run) final {
    const std::u16string document = office_name_of(file);
    if (!clsCommon().FileExists(document))
      return failed(u"There is no " + to_utf16(path_to_host(document)) + u" for these texts");
    if (is_read_only(document))
      return failed(to_utf16(path_to_host(document)) + u" is read-only: allow that it is written, then import again");
    const Made made{scratch_copy(document, run), document};
    const std::u16string xml = folder_of(made.scratch) + file_name_of(file);
    copy_file(file, xml);
    return import(xml, made);
  }
};

class XmlToPresentation final : public ImportVerb {
  Outcome import(const std::u16string& xml, const Made& made) override {
    converter_.XMLFile(xml);
    const std::int32_t result = converter_.XML2PPT();
    return outcome_of(result, {made}, converter_.errors(), kPresentationProgram);
  }

  clsPPTUtil converter_;
};

class XmlToWorkbook final : public ImportVerb {
  Outcome import(const std::u16string& xml, const Made& made) override {
    converter_.XMLFile(xml);
    const std::int32_t result = converter_.XML2XLS();
    return outcome_of(result, {made}, converter_.errors(), kWorkbookProgram);
  }

  clsXLSUtil converter_;
};

constexpr VerbEntry kVerbs[] = {
    {"word", "to-rtf", "Convert Word documents to RTF", "kavo word to-rtf report.doc", make_verb<WordToRtf>},
    {"word", "to-doc", "Convert RTF documents to Word", "kavo word to-doc report_doc.rtf", make_verb<WordToDoc>},
    {"powerpoint", "to-xml", "Export the texts of presentations as XML", "kavo powerpoint to-xml deck.ppt",
     make_verb<PresentationToXml>},
    {"powerpoint", "to-ppt", "Import translated XML into its presentation", "kavo powerpoint to-ppt deck_ppt.xml",
     make_verb<XmlToPresentation>},
    {"excel", "to-xml", "Export the texts of workbooks as XML", "kavo excel to-xml book.xls", make_verb<WorkbookToXml>},
    {"excel", "to-xls", "Import translated XML into its workbook", "kavo excel to-xls book_xls.xml",
     make_verb<XmlToWorkbook>},
};

}  // namespace

std::span<const VerbEntry> office_verbs() { return kVerbs; }

}  // namespace kavo
