#include "workflow/page_guard.h"

#include "common/checksum.h"
#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "html/scripts/protected_pair.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/tud_format.h"

namespace kavo {

namespace {

PageNames names_of(const std::u16string& page) {
  PageNames names;
  names.page = page;
  complete_from_page(names);
  return names;
}

[[noreturn]] void refuse(const std::u16string& work) {
  throw failure(FailureNumber::kFileAlreadyExists,
                to_utf16(path_to_host(work)) +
                    u" exists and is not what this page gives: somebody may have worked on it, or it is another "
                    u"document. Nothing is changed; --overwrite replaces it");
}

// True when a bilingual document in any language was made from the file in its current state. A damaged document proves
// nothing.
bool is_as_prepared(const std::u16string& file) {
  const std::u16string folder = folder_of(file);
  const std::uint64_t checksum = checksum_of_file(file);
  for (const std::u16string& tud : ports().files->find(tud_name_of(file, u"*"))) {
    const std::optional<TudHeader> header = header_if_bilingual(folder + tud);
    if (header && header->checksum == checksum) return true;
  }
  return false;
}

}  // namespace

void refuse_work_beside_page(const std::u16string& page) {
  if (const std::u16string work = work_beside_page(names_of(page)); !work.empty()) refuse(work);
}

void refuse_work_beside_prepared_page(const std::u16string& page) {
  if (const std::int32_t type = kind_of_document(page).type; type != kHtmlPage && type != kServerPage) return;
  const PageNames names = names_of(page);
  if (work_beside_page(names).empty()) return;
  for (const std::u16string& file : {names.html, names.script})
    if (ports().files->info(file) && !is_as_prepared(file)) refuse(file);
}

}  // namespace kavo
