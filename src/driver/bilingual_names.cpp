#include "driver/bilingual_names.h"

#include "common/tud_names.h"
#include "driver/file_types.h"
#include "driver/tud_name.h"
#include "html/scripts/script_names.h"

namespace kavo {

std::vector<std::u16string> bilingual_documents_of(std::u16string_view document, std::u16string_view target_language) {
  std::vector<std::u16string> names;
  const std::int32_t type = FileTypeOf(document);
  if (type == kHtmlPage || type == kServerPage) {
    ScriptNames page{.page = std::u16string(document), .html = {}, .script = {}};
    complete_from_page(page);
    for (const std::u16string& file : {page.html, page.script}) names.push_back(tud_name_of(file, target_language));
    return names;
  }
  names.push_back(tud_name_of(document, target_language));
  if (type == kMifDocument)
    for (const std::u16string_view side : kMifSides) names.push_back(mif_side_tud(TudName(names.front()), side));
  return names;
}

}  // namespace kavo
