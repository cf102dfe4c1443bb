// Names of the files that belong to a document in translation, the one place where they are made.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// The bilingual document: page_asp.htm for FR gives page_asp_htm_FR.tud, in the same folder.
std::u16string tud_name_of(std::u16string_view document, std::u16string_view target_language);
// Its skeleton: its own name and ".skl".
std::u16string skeleton_name_of(std::u16string_view tud);

}  // namespace kavo
