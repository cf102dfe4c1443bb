// How an RTF document begins.
#pragma once

#include "common/block_reader.h"

namespace kavo::rtf {

// Reads on until the beginning can be told; nothing is consumed. Throws `failure` 5 for a document that does not begin
// with {\rtf, whatever its name says; a byte order mark of UTF-8 and white space may stand before that.
void refuse_other_formats(BlockReader& document);

}  // namespace kavo::rtf
