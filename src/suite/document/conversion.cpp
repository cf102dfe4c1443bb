#include "suite/document/conversion.h"

#include "common/checksum.h"
#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/plain_name.h"
#include "interchange/office_interchange.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/skeleton.h"
#include "suite/document/tud_format.h"
#include "suite/filters/filter.h"

namespace kavo {
namespace {

// Checks a text that becomes part of a file name in the bilingual document.
std::string checked(std::string name) {
  if (const std::string_view problem = name.empty() ? std::string_view() : plain_name_problem(name); !problem.empty())
    throw failure(FailureNumber::kInvalidCall,
                  formatted(u"\"{}\" cannot be a name in a bilingual document: {}", name, problem));
  return name;
}

std::string stored_name(std::u16string_view path) { return checked(path_to_host(file_name_of(path))); }

SetMark set_of(const ConversionRequest& request) {
  SetMark set;
  set.mark = checked(request.mark);
  if (request.author_document.empty()) return set;
  set.author_document = stored_name(request.author_document);
  set.author_checksum = checksum_of_file(request.author_document);
  return set;
}

class ConversionSink final : public ExtractionSink {
 public:
  ConversionSink(const ConversionRequest& request, const FilterEntry& filter)
      : request_(request),
        filter_(filter),
        skeleton_name_(request.skeleton.empty() ? skeleton_name_of(request.tud) : request.skeleton),
        checksum_(checksum_of_file(request.document)),
        set_(set_of(request)),
        replaces_skeleton_(ports().files->info(skeleton_name_).has_value()),
        skeleton_(skeleton_name_),
        tud_(request.tud) {}

  void begin(const DocumentFacts& facts) override {
    skeleton_.begin(filter_.tag, checksum_, facts, set_);
    header_.original = stored_name(request_.document);
    header_.source_format = to_utf8(ascii_upper(extension_of(request_.document)));
    header_.filter = to_utf8(filter_.tag);
    header_.skeleton = stored_name(skeleton_name_);
    header_.source_language = checked(to_utf8(request_.source_language));
    header_.target_language = checked(to_utf8(request_.target_language));
    header_.source_code_page = facts.code_page;
    const bool keeps = facts.keeps_code_page || request_.target_code_page == 0;
    header_.target_code_page = keeps ? facts.code_page : request_.target_code_page;
    if (facts.text_code_page != 0) header_.target_code_page = facts.text_code_page;
    header_.checksum = checksum_;
    header_.set = set_;
    header_.datatype = facts.datatype.empty() ? filter_.datatype : facts.datatype;
    append_tud_start(xml_, header_);
  }

  void skeleton(std::string_view bytes) override { skeleton_.bytes(bytes); }
  void computed(std::uint32_t kind, std::string_view original) override { skeleton_.computed(kind, original); }
  void segment(const Segment& segment) override { add(segment, false); }
  std::uint32_t nested_segment(const Segment& segment) override { return add(segment, true); }

  std::uint32_t commit() {
    append_tud_end(xml_);
    tud_.write(xml_);
    skeleton_.finish(count_);
    commit_both();
    return count_;
  }

 private:
  std::uint32_t add(const Segment& segment, bool is_nested) {
    if (count_ == UINT32_MAX) throw failure(FailureNumber::kOverflow, u"Overflow");
    ++count_;
    skeleton_.segment(count_, segment, is_nested);
    append_tud_unit(xml_, count_, segment, header_);
    tud_.write(xml_);
    xml_.clear();
    return count_;
  }

  // A bilingual document is useless without its skeleton. So when the second of the two cannot take its name, the first
  // gives its own back.
  void commit_both() {
    FileSystem& files = *ports().files;
    std::u16string old_skeleton;
    if (replaces_skeleton_) {
      old_skeleton = tud_.temporary_path() + u".old";
      copy_file(skeleton_name_, old_skeleton);
    }
    try {
      skeleton_.commit();
      tud_.commit();
    } catch (...) {
      if (!old_skeleton.empty())
        replace_file(old_skeleton, skeleton_name_);
      else if (files.info(skeleton_name_))
        files.remove_file(skeleton_name_);
      throw;
    }
    if (!old_skeleton.empty()) clsCommon().DeleteFile(old_skeleton);
  }

  const ConversionRequest& request_;
  const FilterEntry& filter_;
  std::u16string skeleton_name_;
  std::uint64_t checksum_;
  SetMark set_;
  TudHeader header_;
  bool replaces_skeleton_;  // asked before the new one begins, which may be written under its own name
  SkeletonWriter skeleton_;
  PendingFile tud_;
  std::string xml_;
  std::uint32_t count_ = 0;
};

}  // namespace

namespace {

std::uint32_t convert_form(const ConversionRequest& request, ProgressEvent& progress) {
  const FilterEntry& entry = find_filter(request.filter);
  const std::unique_ptr<Filter> filter = entry.make();
  ConversionSettings settings;
  settings.document = request.document;
  settings.author_document = request.author_document;
  settings.source_language = to_utf8(request.source_language);
  settings.target_language = to_utf8(request.target_language);
  settings.source_code_page = request.source_code_page != 0 ? request.source_code_page : ports().code_page->number();
  settings.target_code_page = request.target_code_page;
  settings.options = request.options;
  settings.tell = request.tell;
  settings.scripts = request.scripts;
  ConversionSink sink(request, entry);
  BlockReader document(request.document);
  progress.restart();
  filter->extract(document, settings, sink, progress);
  return sink.commit();
}

}  // namespace

std::uint32_t convert_document(const ConversionRequest& request, ProgressEvent& progress) {
  if (translated_form_of(request.document).empty()) return convert_form(request, progress);
  // This is an Office document itself. The library hands over its translated form, but other hosts may not.
  FolderRun run(request.tud);
  ConversionRequest form = request;
  const std::u16string copy = run.scratch_path(file_name_of(request.document));
  copy_file(request.document, copy);
  office_interchange().write_form(copy);
  form.document = translated_form_of(copy);
  if (form.author_document.empty()) form.author_document = ports().files->absolute(request.document);
  const std::uint32_t count = convert_form(form, progress);
  run.commit();
  return count;
}

}  // namespace kavo
