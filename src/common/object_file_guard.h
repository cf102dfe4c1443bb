// The side files of the objects taken out of a document have one name for all formats: the document's with ".obj".
#pragma once

#include <string_view>

namespace kavo {

// Throws `failure` 58 when `path` is the object file, with objects in it, of a document of another format than the one
// whose object files begin with `own_start`: replaced, its objects would be lost. Missing and other files pass.
void refuse_foreign_objects(std::u16string_view path, std::string_view own_start);

}  // namespace kavo
