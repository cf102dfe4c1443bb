// The filter of RTF documents reads a copy without pictures and embedded objects: they hold nothing to translate and
// would fill the skeleton. The object file keeps them for the way back.
#pragma once

#include <string>

namespace kavo {

class FolderRun;

// The file for the filter to read. It is a scratch copy, whose objects are in `object_file`; or the document itself
// when it holds nothing to move, or its objects were moved before. The author's file is only read. Throws `failure`
// when a file cannot be made, or when the object file holds anything else and not `replaces_objects`.
std::u16string without_objects(const std::u16string& document, const std::u16string& object_file, bool replaces_objects,
                               FolderRun& run);

}  // namespace kavo
