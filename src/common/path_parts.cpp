#include "common/path_parts.h"

namespace kavo {
namespace {

// Where the dot of the extension is, npos when there is none.
std::size_t dot_of(std::u16string_view path) {
  const std::size_t dot = path.rfind(u'.');
  return dot == path.npos || dot < folder_size_of(path) ? path.npos : dot;
}

}  // namespace

std::size_t folder_size_of(std::u16string_view path) { return path.rfind(u'\\') + 1; }  // npos + 1 is 0

std::u16string folder_of(std::u16string_view path) { return std::u16string(path.substr(0, folder_size_of(path))); }

std::u16string file_name_of(std::u16string_view path) { return std::u16string(path.substr(folder_size_of(path))); }

std::u16string stem_of(std::u16string_view path) { return file_name_of(path.substr(0, dot_of(path))); }

std::u16string extension_of(std::u16string_view path) {
  const std::size_t dot = dot_of(path);
  return dot == path.npos ? u"" : std::u16string(path.substr(dot + 1));
}

std::u16string without_extension(std::u16string_view path) { return std::u16string(path.substr(0, dot_of(path))); }

std::u16string parent_of(const std::u16string& path) {
  const std::size_t end = path.rfind(u'\\');
  const bool is_root = end == 0 || (end == 2 && path[1] == u':');
  return path.substr(0, is_root ? end + 1 : end);
}

std::u16string in_folder(const std::u16string& folder, std::u16string_view name) {
  return folder + (folder.ends_with(u'\\') ? u"" : u"\\") + std::u16string(name);
}

}  // namespace kavo
