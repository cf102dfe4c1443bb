#include "common/document_kind.h"

#include <algorithm>

#include "common/path_parts.h"
#include "common/program_settings.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kPages = u"PHP PHTML PHP3";
constexpr std::u16string_view kFragments = u"INC ASA JSPF";

constexpr std::u16string_view kAddedPages = u"Extensions";
constexpr std::u16string_view kAddedFragments = u"Fragments";

// `words` are separated by blanks, in capital or small letters. `word` is in capitals.
bool holds(std::u16string_view words, std::u16string_view word) {
  const std::u16string padded = u" " + ascii_upper(words) + u" ";
  return !word.empty() && padded.find(u" " + std::u16string(word) + u" ") != std::u16string::npos;
}

}  // namespace

DocumentKind kind_of_document(std::u16string_view file_name) {
  if (const std::int32_t type = FileTypeOf(file_name); type != kUnknownFile) return {type};
  const std::u16string extension = ascii_upper(extension_of(file_name));
  if (extension.find(u' ') != std::u16string::npos) return {};
  if (holds(kPages, extension)) return {kServerPage};
  if (holds(kFragments, extension)) return {kServerPage, true};
  if (holds(kPageSettings.get(kAddedPages), extension)) return {kServerPage};
  if (holds(kPageSettings.get(kAddedFragments), extension)) return {kServerPage, true};
  return {};
}

std::u16string added_page_extensions() { return kPageSettings.get(kAddedPages); }
void store_page_extensions(std::u16string_view value) { kPageSettings.save(kAddedPages, value); }
std::u16string added_fragment_extensions() { return kPageSettings.get(kAddedFragments); }
void store_fragment_extensions(std::u16string_view value) { kPageSettings.save(kAddedFragments, value); }

}  // namespace kavo
