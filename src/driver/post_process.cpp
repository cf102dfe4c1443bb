#include "driver/post_process.h"

#include <string>
#include <utility>
#include <vector>

#include "common/clsCommon.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/run_journal.h"
#include "common/same_file.h"
#include "driver/document_files.h"
#include "driver/step_failures.h"
#include "driver/target_build.h"
#include "driver/utf16_page.h"
#include "html/scripts/clsASP2HTML.h"
#include "mif/clsMIFUtilities.h"
#include "mif/object_file.h"
#include "office/clsDOC2RTF.h"
#include "office/clsPPTUtil.h"
#include "office/clsRTFUtil.h"
#include "office/clsXLSUtil.h"
#include "office/office_converter.h"
#include "office/rtf_insertion.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// The type of an Office file as its converter knows it; "" when the bilingual document was not made of one.
std::u16string office_type(const TudName& name, bool has_language) {
  // A document named without a language is named after its presentation or workbook alone.
  const std::u16string& type = has_language ? name.prepared_type() : name.language();
  const std::u16string known = ascii_upper(type);
  return known == u"PPT" || known == u"XLS" ? type : u"";
}

// True when the RTF is the form of a Word document. It is not for a file called doc.rtf, though its name contains
// "doc".
bool is_form_of_word(const TudName& name) { return name.has_part(0) && ascii_upper(name.part(1)) == u"DOC"; }

// Both Office converters work on a file whose name they make from that of the XML file. Each returns the reason of a
// failure, or "".
std::u16string import_presentation(const std::u16string& xml) {
  clsPPTUtil presentations;
  presentations.XMLFile(xml);
  return presentations.XML2PPT() == 0 ? u"" : reason_of_failure(presentations.errors(), kPresentationProgram);
}
std::u16string import_workbook(const std::u16string& xml) {
  clsXLSUtil workbooks;
  workbooks.XMLFile(xml);
  return workbooks.XML2XLS() == 0 ? u"" : reason_of_failure(workbooks.errors(), kWorkbookProgram);
}

}  // namespace

std::u16string document_made_of(const TudName& name, std::u16string_view target, std::u16string_view language) {
  const std::u16string extension = ascii_upper(extension_of(target));
  if (extension == u"HTM") return name.file_name(0, name.part(1), true);
  if (extension == u"RTF" && is_form_of_word(name)) return name.file_name(0, u"doc", true);
  if (extension == u"XML") {
    if (const std::u16string type = office_type(name, !language.empty()); !type.empty())
      return language.empty() ? name.folder() + stem_of(target) + u"." + type : name.file_name(1, type, true);
  }
  return std::u16string(target);
}

PostProcessing::PostProcessing(const TudName& name, std::u16string_view target, std::u16string created,
                               std::u16string language, std::u16string mark, bool refuses_gaps, FolderRun& run,
                               const RunObserver& observer)
    : name_(name),
      document_(document_made_of(name, target, language)),
      result_(std::move(created)),
      language_(std::move(language)),
      mark_(std::move(mark)),
      refuses_gaps_(refuses_gaps),
      run_(run),
      observer_(observer) {}

void PostProcessing::PostProcess() {
  const std::u16string extension = ascii_upper(extension_of(result_));
  try {
    if (extension == u"HTM") return RestoreScripts();
    if (extension == u"MIF") return MergeMIF();
    if (extension == u"RTF") return RebuildDocument();
    if (extension == u"XML") return RebuildOfficeFile();
  } catch (const reported_failure&) {
    throw;
  } catch (const failure& reason) {
    observer_.tell({reason.description()});
    throw reported_failure();
  }
}

void PostProcessing::RestoreScripts() {
  const std::u16string script = name_.file_name(1, u"SCR", true);
  FolderRun part(script);
  part.borrow(script);
  rebuild(name_.script_tud(), script);

  std::u16string page = result_;
  unsigned utf16 = 0;
  if (is_utf16_page(result_)) {
    page = run_.scratch_path(u"utf8-" + std::u16string(file_name_of(result_)));
    utf16 = write_as_utf8(result_, page);
  }
  clsASP2HTML scripts;
  scripts.Progress([&](std::int16_t percent) { observer_.tell_progress(document_, percent); });
  scripts.HTMFile(page);
  scripts.SCRFile(script);
  scripts.ASPFile(run_.scratch_path(file_name_of(document_)));
  scripts.refuse_gaps(refuses_gaps_);
  const bool restored = scripts.HTML2ASP() == 0;
  observer_.tell_all_after_heading(scripts.ErrorList());
  if (restored)
    for (const Message& warning : scripts.warnings()) observer_.tell(warning);
  result_ = scripts.ASPFile();
  if (restored && utf16 != 0) turn_into_utf16(result_, utf16);
  part.commit();
  if (!restored) throw reported_failure();
}

void PostProcessing::MergeMIF() {
  const std::u16string objects = name_.file_name(1, u"obj", false);
  // The preparation does not take objects out, so without an object file there is nothing to put back, unless the
  // document holds placeholders.
  const bool has_objects = is_file(objects) || holds_object_placeholder(result_, nullptr);
  bool merged = false;
  {
    FolderRun part(objects);
    std::vector<std::u16string> sides;
    for (const std::u16string_view side : kMifSides) {
      sides.push_back(mif_side_file(name_.folder(), side));
      part.borrow(sides.back());
      rebuild(mif_side_tud(name_.folder(), side, name_.language()), sides.back());
    }
    clsMIFUtilities mif;
    mif.Progress([&](std::int16_t percent) { observer_.tell_progress(document_, percent); });
    mif.StartBatch();
    mif.IndexFile(sides[0]);
    mif.XrefFile(sides[1]);
    mif.VarFile(sides[2]);
    mif.MIFFile(result_);
    mif.ObjFile(objects);
    merged = mif.Merge() == 0 && (!has_objects || mif.InsertObjects() == 0);
    observer_.tell_all(mif.ErrorList());
    if (const std::int64_t missing = mif.counts().not_found; merged && missing != 0)
      observer_.tell(
          {formatted(u"Hidden texts (index entries, formats, variables) that are missing in the documents of the side "
                     u"files stay untranslated: {}",
                     missing)});
    part.commit();
  }
  if (!merged) throw reported_failure();
  // The side files that the preparation made are no longer needed. If the run fails, they come back.
  for (const std::u16string_view side : kMifSides)
    if (const std::u16string prepared = mif_side_file(name_.folder(), side); !is_same_file(prepared, document_))
      remove_if_there(*ports().files, prepared);
}

void PostProcessing::RebuildDocument() {
  clsRTFUtil objects;
  objects.Progress([&](std::int16_t percent) { observer_.tell_progress(document_, percent); });
  objects.RTFFile(result_);
  objects.ObjFile(name_.file_name(1, u"obj", false));
  // Without an object file there is nothing to put back, unless the document holds placeholders.
  if (is_file(objects.ObjFile()) || holds_object_markers(result_)) {
    const bool inserted = objects.InsertObjects() == 0;
    observer_.tell_all(objects.ErrorList());
    if (!inserted) throw reported_failure();
  }
  if (!is_form_of_word(name_)) return;

  form_ = result_;
  clsDOC2RTF word;
  word.RTFFile(result_);
  word.DOCFile(run_.scratch_path(file_name_of(document_)));
  if (word.RTF2DOC() != 0 || !is_file(word.DOCFile()))
    throw failure(FailureNumber::kInvalidCall, u"The word processor could not convert " + result_ + u": " +
                                                   reason_of_failure(word.errors(), kWordProgram));
  if (!word.losses().empty()) observer_.tell({word.losses()});
  result_ = word.DOCFile();
}

void PostProcessing::RebuildOfficeFile() {
  const bool has_language = !language_.empty();
  const std::u16string type = office_type(name_, has_language);
  if (type.empty()) return;  // any other XML document
  const std::u16string source = name_.file_name(has_language ? 1 : 2, type, false);
  if (is_same_file(document_, source))
    throw failure(FailureNumber::kInvalidCall, u"The target must be another file than " + source);
  // The texts go into a copy of the source. The XML file must be named after the copy.
  const std::u16string copy = run_.scratch_path(file_name_of(document_));
  const std::u16string xml = without_extension(copy) + u"_" + type + u".xml";
  copy_file(source, copy);
  if (!is_same_file(xml, result_)) replace_file(result_, xml);
  form_ = xml;
  const std::u16string problem = ascii_upper(type) == u"PPT" ? import_presentation(xml) : import_workbook(xml);
  if (!problem.empty())
    throw failure(FailureNumber::kInvalidCall, u"The texts could not be put into " + document_ + u": " + problem);
  result_ = copy;
}

// Makes a companion's `file` from its bilingual document. Throws `failure` when that fails.
void PostProcessing::rebuild(const std::u16string& document, const std::u16string& file) {
  const std::u16string tud = named_as_in_folder(document);  // messages show its name
  TargetBuild build(tud, run_);
  const auto take = [&](auto&& step) {
    try {
      step();
    } catch (const refusal& reason) {
      throw failure(FailureNumber::kInvalidCall, tud + u": " + reason.description());
    }
  };
  take([&] { build.open(); });
  if (build.set_mark() != mark_)
    throw failure(FailureNumber::kInvalidCall,
                  tud +
                      u" does not come from the same preparation as the document that it belongs to: their texts would "
                      u"go to the wrong places. Prepare the document again, or put the documents of one "
                      u"preparation together");
  take([&] {
    build.read_details();
    build.save_open_tag(std::nullopt);
    build.locate_skeleton();
  });
  // The place is in this document, not in the one that the user named, so the message must say so.
  try {
    build.create_target(file, language_);
  } catch (const failure& reason) {
    throw failure(reason.number(), tud + u": " + reason.description(), reason.source());
  }
}

}  // namespace kavo
