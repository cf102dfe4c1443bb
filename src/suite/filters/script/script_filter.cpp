#include "suite/filters/script/script_filter.h"

#include "platform/unicode.h"
#include "suite/document/tud_format.h"
#include "suite/filters/script/script_extraction.h"
#include "suite/filters/script/script_writing.h"

namespace kavo {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

class ScriptFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
};

// "asp" of "index_asp.scr"
std::string extension_of_page(std::u16string_view script_file) {
  const std::string name = to_utf8(ascii_lower(script_file));
  const std::size_t dot = name.rfind('.');
  const std::size_t mark = name.rfind('_');
  return mark == std::string::npos || dot == std::string::npos || mark > dot ? ""
                                                                             : name.substr(mark + 1, dot - mark - 1);
}

void ScriptFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                           ProgressEvent& progress) {
  while (document.more()) progress.report(static_cast<std::int16_t>(document.percent() / 2));
  std::string_view file = document.window();
  DocumentFacts facts;
  facts.code_page = settings.source_code_page;
  facts.data = kScriptFacts;
  facts.datatype = kScriptDatatype;
  const std::size_t mark = file.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
  if (mark != 0) {
    facts.code_page = kUtf8CodePage;
    facts.keeps_code_page = true;
  }
  sink.begin(facts);
  sink.skeleton(file.substr(0, mark));
  file.remove_prefix(mark);
  const TextCoding coding(facts.code_page);
  script::ScriptExtraction(file, extension_of_page(settings.document), coding, settings.scripts, sink).run(progress);
  document.consume(document.window().size());
}

void ScriptFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  script::ScriptWriting(hole, target_coding()).write(translation, bytes);
}

}  // namespace

std::unique_ptr<Filter> make_script_filter() { return std::make_unique<ScriptFilter>(); }

}  // namespace kavo
