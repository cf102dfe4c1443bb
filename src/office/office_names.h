// How the files of one Office conversion are named after each other.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// "C:\a\report.doc" to "C:\a\report_doc.rtf".
std::u16string rtf_name_of(std::u16string_view doc_file);
// "C:\a\report_doc.rtf" (any case) to "C:\a\report.doc", "C:\a\other.rtf" to "C:\a\other.doc".
std::u16string doc_name_of(std::u16string_view rtf_file);
// "C:\a\deck.ppt" to "C:\a\deck_ppt.xml".
std::u16string xml_name_of(std::u16string_view office_file);
// "C:\a\deck_ppt.xml" to "C:\a\deck.ppt": the fourth character from the end of the name becomes ".", whatever it is. A
// name that has no such character stays.
std::u16string office_name_of(std::u16string_view xml_file);

// False for "" too.
bool is_existing_file(std::u16string_view path);

}  // namespace kavo
