// What every verb asks before it writes the protected page and the script file of a page.
#pragma once

#include <string>

namespace kavo {

// Throws `failure` 58, with the advice to name --overwrite, when a file that protecting `page` would replace is not one
// that was made of this page as it is now: it may hold somebody's work.
void refuse_work_beside_page(const std::u16string& page);

}  // namespace kavo
