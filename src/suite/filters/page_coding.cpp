#include "suite/filters/page_coding.h"

#include "common/block_reader.h"
#include "common/path_parts.h"
#include "formats/script/language.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {

std::string extension_of_page(const ConversionSettings& settings) {
  if (!settings.author_document.empty()) return to_utf8(ascii_lower(extension_of(settings.author_document)));
  const std::string name = to_utf8(ascii_lower(stem_of(settings.document)));
  const std::size_t mark = name.rfind('_');
  return mark == std::string::npos ? "" : name.substr(mark + 1);
}

html::PageCoding page_coding_of(const ConversionSettings& settings, std::string_view beginning) {
  const script::Language server = script::language_of_page(extension_of_page(settings));
  if (settings.author_document.empty() || !ports().files->info(settings.author_document))
    return html::coding_of(beginning, server);
  BlockReader page(settings.author_document);
  while (page.window().size() < html::kDeclarationReach && page.more()) {
  }
  return html::coding_of(page.window(), server);
}

}  // namespace kavo
