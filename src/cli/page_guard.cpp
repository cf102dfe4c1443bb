#include "cli/page_guard.h"

#include "html/protected_pair.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"

namespace kavo {

void refuse_work_beside_page(const std::u16string& page) {
  ScriptNames names;
  names.page = page;
  complete_from_page(names);
  const std::u16string work = work_beside_page(names);
  if (work.empty()) return;
  throw failure(FailureNumber::kFileAlreadyExists,
                to_utf16(path_to_host(work)) +
                    u" is there and is not what this page gives: somebody may have worked on it, or it is another "
                    u"document. Nothing is changed; --overwrite replaces it");
}

}  // namespace kavo
