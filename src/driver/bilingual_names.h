// Which bilingual documents the preparation of a document leads to, before anything is prepared.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// By the document's type: a page has two, a MIF document four, any other one. Throws `failure` 6 for a name beyond what
// strParseFileName takes.
std::vector<std::u16string> bilingual_documents_of(std::u16string_view document, std::u16string_view target_language);

}  // namespace kavo
