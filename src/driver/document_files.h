// Questions about the documents of a run.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// True for a file, false for a folder or a name that is not there. Throws `failure` when the system cannot say.
bool is_file(std::u16string_view path);
// The path with the file's name as its folder holds it, which may differ in letter case; the path itself when there is
// no such file. Throws `failure` when the folder cannot be read.
std::u16string named_as_in_folder(std::u16string_view path);
// Throws `failure` 58 when the folder holds another file whose name differs only in letter case, as some systems allow.
// Files named after the two would have the same names.
void refuse_twin(std::u16string_view path);

}  // namespace kavo
