#include "workflow/side_file_guard.h"

#include <algorithm>

#include "common/document_names.h"
#include "common/file_type.h"
#include "common/path_parts.h"
#include "driver/companions.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {

void refuse_others_side_files(const std::u16string& document, const std::u16string& target,
                              const std::vector<std::u16string>& prepared) {
  if (FileTypeOf(document) != kMifDocument) return;
  const std::vector<std::u16string> own = bilingual_documents_of(document, target);
  if (!ports().files->info(own[1])) return;
  const std::u16string folder = folder_of(document);
  const std::u16string all = folder + u"*_mif_" + target + u".tud";
  for (const std::u16string& name : ports().files->find(all)) {
    const std::u16string other = folder + name;
    const auto is_other = [&](const std::u16string& known) { return equal_ignoring_case(known, other); };
    const auto makes_other = [&](const std::u16string& each) { return is_other(tud_name_of(each, target)); };
    if (std::ranges::any_of(own, is_other) || std::ranges::any_of(prepared, makes_other)) continue;
    throw failure(FailureNumber::kFileAlreadyExists,
                  to_utf16(path_to_host(other)) + u" shares the documents of its hidden texts (KAVO_..._mif_" + target +
                      u".tud) with this one: prepare all MIF documents of a folder with one command. Nothing is "
                      u"changed; --overwrite replaces it");
  }
}

}  // namespace kavo
