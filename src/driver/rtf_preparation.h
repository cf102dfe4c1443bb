// The filter of RTF documents reads a copy without pictures and embedded objects, which hold nothing to translate and
// would fill the skeleton. The object file keeps them for rebuilding.
#pragma once

#include <string>

namespace kavo {

class FolderRun;

// The file for the filter to read. It is a scratch copy, whose objects are in `object_file`; or the document itself
// when there is nothing to move, or when its objects were moved before. The author's file is only read. Throws
// `failure` when a file cannot be made, and when the object file holds anything else, unless `replaces_objects` is set.
std::u16string without_objects(const std::u16string& document, const std::u16string& object_file, bool replaces_objects,
                               FolderRun& run);

}  // namespace kavo
