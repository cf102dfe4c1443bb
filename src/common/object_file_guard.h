// Keeps an object file from being lost. The objects taken out of a document go into a file with the document's name and
// ".obj", whatever the format. A file of that name may be there already: the objects of another document, or the output
// of a compiler.
#pragma once

#include "common/pending_file.h"

namespace kavo {

// Completes the new object file; call it before the commit. Throws `failure` 58 when the commit would lose the old file
// of that name: one with other bytes that is more than an object file without objects. So the objects of a document can
// be taken out once more (from a fresh copy), and those of another document are not lost. Throws `failure` when either
// file cannot be read.
void refuse_to_lose_objects(PendingFile& objects);

}  // namespace kavo
