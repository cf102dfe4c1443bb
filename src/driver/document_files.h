// Questions about the documents of a run.
#pragma once

#include <string_view>

namespace kavo {

// True for a file, false for a folder and for nothing. Throws `failure` when that cannot be known.
bool is_file(std::u16string_view path);
// Throws `failure` 58 when the folder holds another file whose name differs in letter case only, as some systems allow:
// to all that is named after the two they are one.
void refuse_twin(std::u16string_view path);

}  // namespace kavo
