// Whether the protected page and the script file beside a server page may be replaced without asking.
#pragma once

#include <string>

#include "common/document_names.h"

namespace kavo {

// The first of names.html and names.script that may hold somebody's work, "" when neither does. What they may hold
// without: nothing (no file, or blanks only), or byte for byte what is made of names.page as it is now, by protection
// alone or by protection and repair with the default table. So a translated page counts as work, and so do files that
// were made of an earlier state of the page: nothing in them says so.
//
// Reads the three files and writes scratch files beside the two, which are gone afterwards. Throws `failure`.
std::u16string work_beside_page(const PageNames& names);

inline bool is_our_untouched_pair(const PageNames& names) { return work_beside_page(names).empty(); }

}  // namespace kavo
