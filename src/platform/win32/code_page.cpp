// Code pages with the system's own tables and rules: best fit, replacement of what is not valid.
#include "platform/code_page.h"

#include <windows.h>

#include <array>
#include <climits>

#include "platform/adapters.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

class WindowsCodePage final : public CodePage {
 public:
  explicit WindowsCodePage(unsigned number) : number_(number) {
    // Kept in a table, because the scanners ask for every byte.
    for (int byte = 0; byte < 256; ++byte)
      lead_bytes_[static_cast<std::size_t>(byte)] = IsDBCSLeadByteEx(number, static_cast<BYTE>(byte)) != 0;
  }

  unsigned number() const override { return number_; }
  bool is_lead_byte(unsigned char byte) const override { return lead_bytes_[byte]; }

  std::u16string decode(std::string_view bytes) const override {
    if (bytes.empty()) return {};
    const int size = checked_size(bytes.size());
    const int length = MultiByteToWideChar(number_, 0, bytes.data(), size, nullptr, 0);
    if (length == 0) throw_last_error();
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(number_, 0, bytes.data(), size, text.data(), length);
    return from_wide(text);
  }

  std::string encode(std::u16string_view text) const override {
    if (text.empty()) return {};
    const std::wstring wide = to_wide(text);
    const int size = checked_size(wide.size());
    const int length = WideCharToMultiByte(number_, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    if (length == 0) throw_last_error();
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(number_, 0, wide.data(), size, bytes.data(), length, nullptr, nullptr);
    return bytes;
  }

 private:
  // The conversion calls use 32-bit sizes.
  static int checked_size(std::size_t size) {
    if (size > INT_MAX) throw system_failure(ERROR_NOT_ENOUGH_MEMORY);
    return static_cast<int>(size);
  }

  unsigned number_;
  std::array<bool, 256> lead_bytes_{};
};

}  // namespace

const CodePage& system_code_page() {
  static const WindowsCodePage code_page(GetACP());
  return code_page;
}

std::unique_ptr<CodePage> make_code_page(std::string_view name) {
  const unsigned number = code_page_number(name);
  // A system may lack the tables of a code page that the program knows.
  if (!IsValidCodePage(number))
    throw failure(FailureNumber::kInvalidCall, formatted(u"Code page {} is not installed on this system", number));
  return std::make_unique<WindowsCodePage>(number);
}

}  // namespace kavo
