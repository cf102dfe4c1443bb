#include "common/document_names.h"

#include <algorithm>

#include "common/file_type.h"
#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kBilingualDocument = u".tud";
constexpr std::u16string_view kMif = u".mif";

// "C:\web\index_asp"
std::u16string marked(std::u16string_view path) { return without_extension(path) + u"_" + extension_of(path); }

// "index_asp" gives "index.asp" back; a name without such an ending gets ".asp".
std::u16string page_name(std::u16string_view html) {
  constexpr std::u16string_view kKinds[] = {u"_ASP", u"_JSP", u"_WSP", u"_HTM"};
  const std::u16string stem = stem_of(html);
  const auto mark = stem.rfind(u'_');
  if (mark != stem.npos && std::ranges::find(kKinds, ascii_upper(stem.substr(mark, 4))) != std::end(kKinds))
    return folder_of(html) + stem.substr(0, mark) + u"." + stem.substr(mark + 1);
  return folder_of(html) + stem + u".asp";
}

// True for a name such as "deck_ppt.xml", which already contains its document's name.
bool is_office_xml(std::u16string_view path) {
  const std::u16string stem = ascii_upper(stem_of(path));
  return ascii_upper(extension_of(path)) == u"XML" && (stem.ends_with(u"_PPT") || stem.ends_with(u"_XLS"));
}

void complete(PageNames& names, const std::u16string& base, bool script_has_extension) {
  if (!names.html.empty() && !names.script.empty()) return;
  if (names.script.empty()) names.script = (script_has_extension ? marked(base) : without_extension(base)) + u".scr";
  if (names.page.empty()) names.page = page_name(base);
  if (names.html.empty()) names.html = marked(base) + u".htm";
}

}  // namespace

std::u16string tud_name_of(std::u16string_view document, std::u16string_view target_language) {
  std::u16string base = is_office_xml(document) ? without_extension(document) : marked(document);
  if (FileTypeOf(document) == kWordDocument) base = marked(rtf_name_of(document));
  return (base + u"_").append(target_language).append(kBilingualDocument);
}

std::u16string translated_form_of(std::u16string_view document) {
  switch (file_type_row(FileTypeOf(document)).form) {
    case TranslatedForm::kRtf:
      return rtf_name_of(document);
    case TranslatedForm::kXml:
      return xml_name_of(document);
    default:
      return u"";
  }
}

std::u16string skeleton_name_of(std::u16string_view tud) { return std::u16string(tud) + u".skl"; }

std::u16string target_name_of(std::u16string_view folder, std::u16string_view document,
                              std::u16string_view target_language) {
  std::u16string name = (std::u16string(folder) + stem_of(document) + u"_").append(target_language);
  if (const std::u16string extension = extension_of(document); !extension.empty()) name += u"." + extension;
  return name;
}

std::u16string open_tag_name_of(std::u16string_view tud) { return without_extension(tud) + u".otf"; }

void complete_from_page(PageNames& names) { complete(names, std::u16string(names.page), true); }
void complete_from_html(PageNames& names) { complete(names, std::u16string(names.html), false); }

std::u16string mif_side_file(std::u16string_view folder, std::u16string_view side) {
  return std::u16string(folder).append(side).append(kMif);
}

std::u16string mif_side_tud(std::u16string_view folder, std::u16string_view side, std::u16string_view target_language) {
  return tud_name_of(mif_side_file(folder, side), target_language);
}

bool is_mif_side_file(std::u16string_view path) {
  return std::ranges::any_of(kMifSides, [&](std::u16string_view side) {
    return equal_ignoring_ascii_case(file_name_of(path), mif_side_file(u"", side));
  });
}

std::u16string backup_name_of(std::u16string_view document) { return std::u16string(document) + u".kavo.bak"; }

std::u16string object_file_of(std::u16string_view document) { return without_extension(document) + u".obj"; }

std::u16string rtf_name_of(std::u16string_view doc_file) { return without_extension(doc_file) + u"_doc.rtf"; }

std::u16string doc_name_of(std::u16string_view rtf_file) {
  constexpr std::u16string_view kSuffix = u"_DOC";
  std::u16string base = without_extension(rtf_file);
  if (upper_case(stem_of(rtf_file)).ends_with(kSuffix)) base.erase(base.size() - kSuffix.size());
  return base + u".doc";
}

std::u16string xml_name_of(std::u16string_view office_file) { return marked(office_file) + u".xml"; }

std::u16string office_name_of(std::u16string_view xml_file) {
  std::u16string name = without_extension(xml_file);
  if (name.size() >= 4) name[name.size() - 4] = u'.';
  return name;
}

std::u16string aside_name_of(std::u16string_view path, int number) {
  return number > 1 ? formatted(u"{}.kavo-old{}", path, number) : formatted(u"{}.kavo-old", path);
}

}  // namespace kavo
