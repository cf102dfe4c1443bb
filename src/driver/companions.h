// The companions of a bilingual document: the files without which its document cannot be rebuilt completely.
#pragma once

#include <string>
#include <vector>

#include "driver/tud_name.h"

namespace kavo {

// Full names. For a page: the document of its scripts. For a MIF document: the documents of its three side files. For a
// presentation or workbook: the file that it was made of. Other documents have none.
std::vector<std::u16string> companions_of(const TudName& name);
// The companions that are missing. Throws `failure` when that cannot be known.
std::vector<std::u16string> missing_companions(const TudName& name);
// True when rebuilding has steps after the filter: companions, embedded objects or a conversion. These steps need a
// language that the suite knows.
bool has_way_back(const TudName& name);

// The bilingual documents that preparing a document would lead to: two for a page, four for a MIF document, one for any
// other. Reads nothing but the name.
std::vector<std::u16string> bilingual_documents_of(std::u16string_view document, std::u16string_view target_language);

}  // namespace kavo
