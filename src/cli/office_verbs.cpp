// kavo word, powerpoint and excel ...: conversions that an Office program does, driven through automation. One program
// serves all files of a command line.
#include <utility>

#include "cli/verb.h"
#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/same_file.h"
#include "office/clsDOC2RTF.h"
#include "office/clsPPTUtil.h"
#include "office/clsXLSUtil.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// Why a conversion failed, as far as it can be told: the classes answer 0 or 1 and keep the errors of their calls.
std::u16string reason_of(const error_state& errors, std::u16string_view program) {
  try {
    ports().automation->create(program);
  } catch (const failure& reason) {
    return reason.description();
  }
  if (errors.number() != 0) return errors.first_description();
  return std::u16string(program) + u" refused the file";
}

Outcome outcome_of(std::int32_t result, const std::u16string& produced, const error_state& errors,
                   std::u16string_view program) {
  Outcome outcome;
  outcome.result = result;
  if (result == 0) {
    outcome.produced = {{produced, FileTypeOf(produced)}};
  } else {
    outcome.ending = Outcome::kFailed;
    outcome.messages = {{reason_of(errors, program)}};
  }
  return outcome;
}

// A file that is not there is told without starting a program, which takes seconds.
class OfficeVerb : public Verb {
 public:
  Outcome run(const std::u16string& file, const ProgressEvent::Handler&) final {
    if (clsCommon().FileExists(file)) return convert(file);
    Outcome missing;
    missing.result = 1;
    missing.ending = Outcome::kFailed;
    missing.messages = {{u"File not found"}};
    return missing;
  }

 protected:
  virtual Outcome convert(const std::u16string& file) = 0;
};

// A conversion into a file of its own, which replaces an older one only when asked to.
class NewFileVerb : public OfficeVerb {
 public:
  void add_options(CLI::App& app) override {
    app.add_flag("--overwrite", overwrite_, "Replace a file that has the name of the result");
  }

 protected:
  virtual std::u16string target_of(const std::u16string& file) const = 0;
  virtual Outcome convert_to(const std::u16string& file, const std::u16string& target) = 0;

 private:
  Outcome convert(const std::u16string& file) final {
    const std::u16string target = target_of(file);
    const std::u16string name = to_utf16(path_to_host(target));
    if (is_same_file(file, target))
      throw failure(FailureNumber::kInvalidCall, name + u" would be converted into itself: give it another extension");
    if (!overwrite_ && ports().files->info(target))
      throw failure(FailureNumber::kFileAlreadyExists, name + u" exists already: --overwrite replaces it");
    return convert_to(file, target);
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
  Outcome convert_to(const std::u16string& file, const std::u16string& target) override {
    clsDOC2RTF& word = converter();
    word.DOCFile(file);
    word.RTFFile(target);
    const std::int32_t result = word.DOC2RTF();
    return outcome_of(result, target, word.errors(), u"Word.Application");
  }
};

class WordToDoc final : public WordVerb {
  std::u16string target_of(const std::u16string& file) const override { return doc_name_of(file); }
  Outcome convert_to(const std::u16string& file, const std::u16string& target) override {
    clsDOC2RTF& word = converter();
    word.RTFFile(file);
    word.DOCFile(target);
    const std::int32_t result = word.RTF2DOC();
    return outcome_of(result, target, word.errors(), u"Word.Application");
  }
};

class PresentationToXml final : public NewFileVerb {
  std::u16string target_of(const std::u16string& file) const override { return xml_name_of(file); }
  Outcome convert_to(const std::u16string& file, const std::u16string& target) override {
    converter_.PPTFile(file);
    const std::int32_t result = converter_.PPT2XML();
    return outcome_of(result, target, converter_.errors(), u"PowerPoint.Application");
  }

  clsPPTUtil converter_;
};

class XmlToPresentation final : public OfficeVerb {
  Outcome convert(const std::u16string& file) override {
    converter_.XMLFile(file);
    const std::int32_t result = converter_.XML2PPT();
    return outcome_of(result, converter_.PPTFile(), converter_.errors(), u"PowerPoint.Application");
  }

  clsPPTUtil converter_;
};

class WorkbookToXml final : public NewFileVerb {
  std::u16string target_of(const std::u16string& file) const override { return xml_name_of(file); }
  Outcome convert_to(const std::u16string& file, const std::u16string& target) override {
    converter_.XLSFile(file);
    const std::int32_t result = converter_.XLS2XML();
    return outcome_of(result, target, converter_.errors(), u"Excel.Application");
  }

  clsXLSUtil converter_;
};

class XmlToWorkbook final : public OfficeVerb {
  Outcome convert(const std::u16string& file) override {
    converter_.XMLFile(file);
    const std::int32_t result = converter_.XML2XLS();
    return outcome_of(result, converter_.XLSFile(), converter_.errors(), u"Excel.Application");
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
