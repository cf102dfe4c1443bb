// What every verb asks before it writes the protected page and the script file of a page.
#pragma once

#include <string>

namespace kavo {

// Throws `failure` 58, with the advice to name --overwrite, when a file that protecting `page` would replace is not one
// that was made of this page as it is now: it may hold somebody's work.
void refuse_work_beside_page(const std::u16string& page);
// The same, but files of which a bilingual document beside them was made, and that are still what they were then, may
// be replaced, too: the page has changed since, and nobody has worked on them. Nothing for a document that is no page.
void refuse_work_beside_prepared_page(const std::u16string& page);

}  // namespace kavo
