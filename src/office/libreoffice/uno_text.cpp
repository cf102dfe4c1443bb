#include "office/libreoffice/uno_text.h"

#include "platform/posix/paths.h"

namespace kavo {
namespace {

bool is_plain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' || c == '.' ||
         c == '-' || c == '_' || c == '~';
}

}  // namespace

rtl::OUString to_uno(std::u16string_view text) {
  return rtl::OUString(reinterpret_cast<const sal_Unicode*>(text.data()), static_cast<sal_Int32>(text.size()));
}

std::u16string from_uno(const rtl::OUString& text) {
  return std::u16string(reinterpret_cast<const char16_t*>(text.getStr()), static_cast<std::size_t>(text.getLength()));
}

rtl::OUString url_of(std::u16string_view path) { return url_of_host(resolve(path)); }

rtl::OUString url_of_host(std::string_view host_path) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::u16string url = u"file://";
  for (const char c : host_path) {
    const auto byte = static_cast<unsigned char>(c);
    if (is_plain(c)) {
      url += static_cast<char16_t>(c);
    } else {
      url += u'%';
      url += static_cast<char16_t>(digits[byte / 16]);
      url += static_cast<char16_t>(digits[byte % 16]);
    }
  }
  return to_uno(url);
}

}  // namespace kavo
