// What people should know of a page's coding before its texts are shown to a translator.
#pragma once

#include <string>

#include "driver/run_observer.h"

namespace kavo {

// Reports declarations that disagree, a coding that is not supported, and the first bytes that the page's coding does
// not have, with their place; of a page that cannot be read, why. `code_page` is that of a page that declares none.
void report_page_coding(const std::u16string& page, unsigned code_page, const RunObserver& observer);

}  // namespace kavo
