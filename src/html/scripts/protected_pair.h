// Says whether the protected page and the script file beside a server page may be replaced without asking.
#pragma once

#include <string>

#include "common/document_names.h"

namespace kavo {

// The first of names.html and names.script that may hold somebody's work, "" when neither does. A file holds no work
// when it is missing or blank, or when its bytes are those that protection, or protection and repair with the default
// table, makes of names.page as it is now. So a translated page counts as work. So does a file made of an earlier state
// of the page, since nothing in it says so.
//
// Reads the three files and writes scratch files beside the two, which are gone afterwards. Throws `failure`.
std::u16string work_beside_page(const PageNames& names);

inline bool is_our_untouched_pair(const PageNames& names) { return work_beside_page(names).empty(); }

}  // namespace kavo
