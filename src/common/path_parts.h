// Cuts a file's full name into its parts. Nothing else in the program does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

// "C:\web\index.asp" has the folder "C:\web\", the name "index.asp", the stem "index" and the extension "asp". The
// folder of a plain name is "", and so is the extension of a name without a dot. A dot in the folder does not count.
std::u16string folder_of(std::u16string_view path);
std::size_t folder_size_of(std::u16string_view path);  // the name begins here
std::u16string file_name_of(std::u16string_view path);
std::u16string stem_of(std::u16string_view path);
std::u16string extension_of(std::u16string_view path);

// The folder without "\" at its end, unless it is a root: "C:\web". The path itself when it has no folder.
std::u16string parent_of(const std::u16string& path);
std::u16string in_folder(const std::u16string& folder, std::u16string_view name);

// The whole name without its extension: "C:\web\index".
std::u16string without_extension(std::u16string_view path);

}  // namespace kavo
