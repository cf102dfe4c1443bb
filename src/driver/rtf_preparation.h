// What the filter of RTF documents gets to see: a copy without pictures and embedded objects, which have nothing to
// translate and would fill the bilingual document's skeleton. They wait in the object file that the way back reads.
#pragma once

#include <string>

namespace kavo {

class FolderRun;

// The document itself when there is nothing to move, or its objects were moved before; else a scratch copy, and the
// object file beside the document. The author's file is only read. Throws `failure` when either cannot be made, or the
// object file holds anything else, unless `replaces_objects`.
std::u16string without_objects(const std::u16string& document, bool replaces_objects, FolderRun& run);

}  // namespace kavo
