// Reports problems of a page's coding before its texts are shown to a translator.
#pragma once

#include <string>

#include "driver/run_observer.h"

namespace kavo {

// Reports, with their place, the first bytes that are not valid in the page's coding; also declarations that disagree
// and a coding that is not supported. When the page cannot be read, reports why. `code_page` is the coding of a page
// that declares none.
void report_page_coding(const std::u16string& page, unsigned code_page, const RunObserver& observer);

}  // namespace kavo
