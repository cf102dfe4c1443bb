// The check before any verb writes the protected page and the script file of a page.
#pragma once

#include <string>

namespace kavo {

// Throws `failure` 58, with the advice to use --overwrite, when protecting `page` would replace a file that was not
// made from the page as it is now, because the file may hold somebody's work.
void refuse_work_beside_page(const std::u16string& page);
// The same, but files that have not changed since a bilingual document was made from them may be replaced, too: only
// the page has changed, and nobody has worked on them. Does nothing for a document that is not a page.
void refuse_work_beside_prepared_page(const std::u16string& page);

}  // namespace kavo
