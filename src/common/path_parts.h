// The parts of a file's full name, the one place where a path is cut.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// "C:\web\index.asp" has the folder "C:\web\", the name "index.asp", the stem "index" and the extension "asp". The
// folder of a plain name is "", and so is the extension of a name without a dot. A dot of the folder does not count.
std::u16string folder_of(std::u16string_view path);
std::u16string file_name_of(std::u16string_view path);
std::u16string stem_of(std::u16string_view path);
std::u16string extension_of(std::u16string_view path);

// The whole name without its extension: "C:\web\index".
std::u16string without_extension(std::u16string_view path);

}  // namespace kavo
