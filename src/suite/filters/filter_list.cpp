// The list of the suite's filters.
#include <array>

#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/filter.h"
#include "suite/filters/html/html_filter.h"
#include "suite/filters/mif/mif_filter.h"
#include "suite/filters/office/office_xml_filter.h"
#include "suite/filters/rc/rc_filter.h"
#include "suite/filters/rtf/rtf_filter.h"
#include "suite/filters/text/text_filter.h"

namespace kavo {
namespace {

// The filters in the order in which the catalogue lists them. Those of Office documents read the form that an Office
// program writes (interchange/). The library knows these by identifiers of their own.
constexpr FilterEntry kFilters[] = {
    {u"Word documents", u"*.doc", u"K19DOCW", "rtf", make_rtf_filter, u"k19docw.k19docwobj.1"},
    {u"RTF documents", u"*.rtf", u"K19RTF", "rtf", make_rtf_filter},
    {u"HTML pages", u"*.htm;*.html", u"K19HTM", "html", make_html_filter},
    {u"FrameMaker MIF documents", u"*.mif", u"K19MIF", "mif", make_mif_filter},
    {u"Resource scripts", u"*.rc", u"K19GCP", "winres", make_rc_filter},
    {u"Text files", u"*.txt;*.scr", u"K19TXT", "plaintext", make_text_filter},
    {u"PowerPoint presentations", u"*.ppt", u"K19PPTW", "xml", make_office_xml_filter, u"k19pptw.k19pptwobj.1"},
    {u"Excel workbooks", u"*.xls", u"K19XLSW", "xml", make_office_xml_filter, u"k19xlsw.k19xlswobj.1"},
};

}  // namespace

std::span<const FilterEntry> all_filters() { return kFilters; }

const FilterEntry& find_filter(std::u16string_view name) {
  const std::u16string upper = ascii_upper(name);
  for (const FilterEntry& filter : kFilters)
    if (upper.find(filter.tag) != std::u16string::npos) return filter;
  throw failure(FailureNumber::kInvalidCall, u"There is no filter \"" + std::u16string(name) + u"\"");
}

}  // namespace kavo
