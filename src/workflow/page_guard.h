// The check before any verb writes the protected page and the script file of a page.
#pragma once

#include <string>

namespace kavo {

// Throws `failure` 58, with the advice to use --overwrite, when protecting `page` would replace a file that was not
// made of the page as it is now: the file may hold somebody's work.
void refuse_work_beside_page(const std::u16string& page);
// The same, but files that are still as they were when a bilingual document was made of them may be replaced, too: the
// page has changed since, and nobody has worked on them. Does nothing for a document that is not a page.
void refuse_work_beside_prepared_page(const std::u16string& page);

}  // namespace kavo
