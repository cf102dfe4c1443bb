#include "driver/companions.h"

#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/path_parts.h"
#include "driver/document_files.h"

namespace kavo {
namespace {

WayBack way_back_of(const TudName& name) { return file_type_row(FileTypeOf(u"x." + name.prepared_type())).way_back; }

}  // namespace

std::vector<std::u16string> companions_of(const TudName& name) {
  std::vector<std::u16string> companions;
  switch (way_back_of(name)) {
    case WayBack::kScripts:
      companions.push_back(name.script_tud());
      break;
    case WayBack::kHiddenTexts:
      for (const std::u16string_view side : kMifSides)
        companions.push_back(mif_side_tud(name.folder(), side, name.language()));
      break;
    case WayBack::kOfficeFile:
      companions.push_back(name.file_name(1, name.prepared_type(), false));
      break;
    case WayBack::kObjects:  // a document without objects has no object file
    case WayBack::kNone:
      break;
  }
  return companions;
}

std::vector<std::u16string> missing_companions(const TudName& name) {
  std::vector<std::u16string> missing = companions_of(name);
  std::erase_if(missing, [](const std::u16string& file) { return is_file(file); });
  return missing;
}

bool has_way_back(const TudName& name) { return way_back_of(name) != WayBack::kNone; }

std::vector<std::u16string> bilingual_documents_of(std::u16string_view document, std::u16string_view target_language) {
  const FileTypeRow& type = file_type_row(kind_of_document(document).type);
  if (type.preparation == Preparation::kScripts) {
    PageNames page{.page = std::u16string(document), .html = {}, .script = {}};
    complete_from_page(page);
    return {tud_name_of(page.html, target_language), tud_name_of(page.script, target_language)};
  }
  std::vector<std::u16string> names{tud_name_of(document, target_language)};
  if (type.preparation == Preparation::kHiddenTexts)
    for (const std::u16string_view side : kMifSides)
      names.push_back(mif_side_tud(folder_of(document), side, target_language));
  return names;
}

}  // namespace kavo
