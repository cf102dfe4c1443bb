#include "common/path_parts.h"

namespace kavo {
namespace {

std::size_t folder_size(std::u16string_view path) { return path.rfind(u'\\') + 1; }  // npos + 1 is 0

// Where the dot of the extension stands, npos without one.
std::size_t dot_of(std::u16string_view path) {
  const std::size_t dot = path.rfind(u'.');
  return dot == path.npos || dot < folder_size(path) ? path.npos : dot;
}

}  // namespace

std::u16string folder_of(std::u16string_view path) { return std::u16string(path.substr(0, folder_size(path))); }

std::u16string file_name_of(std::u16string_view path) { return std::u16string(path.substr(folder_size(path))); }

std::u16string stem_of(std::u16string_view path) { return file_name_of(path.substr(0, dot_of(path))); }

std::u16string extension_of(std::u16string_view path) {
  const std::size_t dot = dot_of(path);
  return dot == path.npos ? u"" : std::u16string(path.substr(dot + 1));
}

std::u16string without_extension(std::u16string_view path) { return std::u16string(path.substr(0, dot_of(path))); }

}  // namespace kavo
