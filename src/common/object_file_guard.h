// The side files of the objects taken out of a document have one name for all formats: the document's with ".obj". What
// lies there already may hold the objects of another document, and compilers write files of such names, too.
#pragma once

#include "common/pending_file.h"

namespace kavo {

// Completes the new object file; call it before the file is committed. Throws `failure` 58 when the old file of its
// final name would be lost: it holds other bytes, and more than the closing marker that an object file without objects
// consists of. So the objects of a document can be taken out again (from a fresh copy), and those of another document
// stay. Throws `failure` when either file cannot be read.
void refuse_to_lose_objects(PendingFile& objects);

}  // namespace kavo
