// Whether an RTF document must be shown to be saved as a Word document: what a text's frames hold is written only when
// the text has a layout, and only a view makes one.
#pragma once

#include <string_view>

namespace kavo {

// True for a document with frames, except one with comments: a view of those needs the parts of LibreOffice's user
// interface, which an installation without one lacks, and ends LibreOffice. Throws `failure` when it cannot be read.
bool needs_view(std::u16string_view rtf);

}  // namespace kavo
