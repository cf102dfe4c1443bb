#include "suite/filters/office/sheet_name.h"

#include "platform/unicode.h"

namespace kavo::office {

std::string valid_sheet_name(std::string_view name) {
  constexpr std::size_t kLongest = 31;
  constexpr std::u16string_view kForbidden = u":\\/?*\r\n\t";
  std::u16string valid;
  for (const char16_t unit : to_utf16(name)) {
    if (unit == u'[')
      valid += u'(';
    else if (unit == u']')
      valid += u')';
    else
      valid += kForbidden.find(unit) == kForbidden.npos ? unit : u'-';
  }
  while (valid.starts_with(u'\'')) valid.erase(0, 1);
  if (valid.size() > kLongest) {
    valid.resize(kLongest);
    // The cut must not leave the first half of a pair.
    if ((valid.back() & 0xFC00) == 0xD800) valid.pop_back();
  }
  while (valid.ends_with(u'\'')) valid.pop_back();
  return valid.empty() ? "Sheet" : to_utf8(valid);
}

}  // namespace kavo::office
