// Recognises RTF documents by their beginning.
#pragma once

#include "common/block_reader.h"

namespace kavo::rtf {

// Throws `failure` 5 for a document that does not begin with {\rtf, whatever its name is. A byte order mark of UTF-8
// and any amount of white space may come first. Leaves the reader at the beginning.
void refuse_other_formats(BlockReader& document);

}  // namespace kavo::rtf
