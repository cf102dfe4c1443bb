// The files beside a bilingual document without which its document comes back incomplete.
#pragma once

#include <string>
#include <vector>

#include "driver/tud_name.h"

namespace kavo {

// Full names: of a page's document that of its scripts, of a MIF document's those of its three side files, of a
// presentation's or workbook's the file that it was made of. None for other documents.
std::vector<std::u16string> companions_of(const TudName& name);
// Those of them that are not there.
std::vector<std::u16string> missing_companions(const TudName& name);
// True when the document's way back does more than the filter's part of it, which needs a language that the suite
// knows: companions, embedded objects or a conversion.
bool has_way_back(const TudName& name);

// Which bilingual documents the preparation of a document leads to, before anything is prepared: a page has two, a MIF
// document four, any other one.
std::vector<std::u16string> bilingual_documents_of(std::u16string_view document, std::u16string_view target_language);

}  // namespace kavo
