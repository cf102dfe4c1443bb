#include "common/file_type.h"

#include <algorithm>

#include "common/path_parts.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

using Names = std::u16string_view[];
constexpr Names kDoc = {u"DOC"}, kRtf = {u"RTF"}, kHtml = {u"HTM", u"HTML"}, kServer = {u"ASP", u"JSP"},
                kMif = {u"MIF"}, kRc = {u"RC"}, kText = {u"TXT"}, kPpt = {u"PPT"}, kXls = {u"XLS"};

// Server pages have no filter, because preparation turns them into a page and a text file first.
constexpr FileTypeRow kRows[] = {
    {kUnknownFile, "unknown", {}, u"", Preparation::kNone, WayBack::kNone},
    {kWordDocument, "Word document", kDoc, u"K19DOCW", Preparation::kNone, WayBack::kObjects, TranslatedForm::kRtf},
    {kRtfDocument, "RTF document", kRtf, u"K19RTF", Preparation::kNone, WayBack::kObjects},
    {kHtmlPage, "HTML page", kHtml, u"K19HTM", Preparation::kScripts, WayBack::kScripts},
    {kServerPage, "server page", kServer, u"", Preparation::kScripts, WayBack::kScripts},
    {kMifDocument, "MIF document", kMif, u"K19MIF", Preparation::kHiddenTexts, WayBack::kHiddenTexts},
    {kResourceScript, "resource script", kRc, u"K19GCP", Preparation::kNone, WayBack::kNone},
    {kPlainText, "plain text", kText, u"K19TXT", Preparation::kNone, WayBack::kNone},
    {kPresentation, "presentation", kPpt, u"K19PPTW", Preparation::kNone, WayBack::kOfficeFile, TranslatedForm::kXml},
    {kWorkbook, "workbook", kXls, u"K19XLSW", Preparation::kNone, WayBack::kOfficeFile, TranslatedForm::kXml},
};

}  // namespace

std::span<const FileTypeRow> file_types() { return kRows; }

const FileTypeRow& file_type_row(std::int32_t code) {
  const auto* const row = std::ranges::find(kRows, code, &FileTypeRow::code);
  return row == std::end(kRows) ? kRows[0] : *row;
}

std::int32_t FileTypeOf(std::u16string_view file_name) {
  constexpr std::size_t kLongestPath = 32767;  // the system's limit, so a longer name cannot belong to a file
  if (file_name.size() > kLongestPath) return kUnknownFile;
  const std::u16string extension = ascii_upper(extension_of(file_name));
  for (const FileTypeRow& row : kRows)
    if (std::ranges::find(row.extensions, extension) != row.extensions.end()) return row.code;
  return kUnknownFile;
}

}  // namespace kavo
