#include "suite/filters/office/office_xml_filter.h"

#include <algorithm>

#include "formats/xml/xml_text.h"
#include "platform/unicode.h"
#include "suite/filters/office/office_xml_extraction.h"
#include "suite/filters/office/sheet_name.h"

namespace kavo {
namespace {

constexpr std::string_view kSheetName = "sheet/name";

class OfficeXmlFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override {
    DocumentFacts facts;
    facts.keeps_code_page = true;
    sink.begin(facts);
    office::OfficeXmlExtraction(document, settings, sink).run(progress);
  }

  void check(const Hole& hole, std::string_view translation) override {
    if (hole.context != kSheetName || !settings().tell) return;
    const std::string wanted = plain_text(translation), name = office::valid_sheet_name(wanted);
    if (name != wanted)
      settings().tell({place_of(hole) + u": \"" + to_utf16(wanted) +
                       u"\" cannot be the name of a sheet; it becomes \"" + to_utf16(name) + u"\""});
  }

  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override {
    if (hole.context == kSheetName)
      append_xml_text(bytes, office::valid_sheet_name(plain_text(translation)));
    else
      Filter::write_segment(hole, translation, bytes);
  }

  // A line break is an element. A line end that an editor has written becomes one, too.
  void write_text(const Hole&, std::string_view text, std::string& bytes) override {
    for (;;) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      append_xml_text(bytes, text.substr(0, end));
      if (end == text.size()) return;
      bytes += "<br/>";
      text.remove_prefix(end + 1);
    }
  }
};

}  // namespace

std::unique_ptr<Filter> make_office_xml_filter() { return std::make_unique<OfficeXmlFilter>(); }

}  // namespace kavo
