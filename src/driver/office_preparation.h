// The filter of a Word document, presentation or workbook reads the form that an Office program writes of it
// (interchange/). The program works on a scratch copy: the author's document is only read.
#pragma once

#include <string>

namespace kavo {

class FolderRun;

// The path of the document's translated form, a scratch file. For a document that filters read themselves, its own
// path. Throws `failure` with the program's reason when it cannot be made, and `interruption` when the user interrupts.
std::u16string in_translated_form(const std::u16string& document, FolderRun& run);

}  // namespace kavo
