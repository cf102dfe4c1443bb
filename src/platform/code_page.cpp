// What all code pages share: their names, and where a block of bytes may be cut.
#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr unsigned kUtf8 = 65001;
// Code pages of Windows, DOS and older Macintosh programs.
constexpr std::array<unsigned, 22> kSupported = {437,  850,  852,  866,  874,  932,  936,  949,   950,   1250,  1251,
                                                 1252, 1253, 1254, 1255, 1256, 1257, 1258, 10000, 10007, 10029, kUtf8};

// The length in bytes of the UTF-8 sequence that a lead byte begins; 0 when the byte is not a lead byte.
std::size_t utf8_length(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

// Whether a second byte may follow the lead byte. It must not make the sequence overlong, a surrogate or larger than
// U+10FFFF.
bool utf8_second_fits(unsigned char lead, unsigned char second) {
  const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  return second >= low && second <= high;
}

std::size_t utf8_incomplete_tail(std::string_view bytes) {
  const std::size_t furthest = std::min<std::size_t>(bytes.size(), 3);
  for (std::size_t back = 1; back <= furthest; ++back) {
    const auto lead = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if ((lead & 0xC0) == 0x80) continue;
    if (utf8_length(lead) <= back) return 0;
    const bool fits = back == 1 || utf8_second_fits(lead, static_cast<unsigned char>(bytes[bytes.size() - back + 1]));
    return fits ? back : 0;
  }
  return 0;
}

}  // namespace

std::size_t CodePage::incomplete_tail(std::string_view bytes) const {
  if (number() == kUtf8) return utf8_incomplete_tail(bytes);
  // A byte that cannot be a lead byte always ends a character. The possible lead bytes after it form pairs; when their
  // number is odd, the last one waits for its trail byte.
  std::size_t run = 0;
  while (run < bytes.size() && is_lead_byte(static_cast<unsigned char>(bytes[bytes.size() - 1 - run]))) ++run;
  return run % 2;
}

unsigned code_page_number(std::string_view name) {
  std::string lower(name);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  std::string_view digits = lower;
  for (const std::string_view prefix : {"windows-", "cp"})
    if (digits.starts_with(prefix)) {
      digits.remove_prefix(prefix.size());
      break;
    }
  unsigned number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) number = 0;
  if (lower == "utf-8" || lower == "utf8") number = kUtf8;
  if (std::find(kSupported.begin(), kSupported.end(), number) != kSupported.end()) return number;

  std::string description("Unknown code page \"");
  description.append(name).append("\"; supported are ");
  for (const unsigned supported : kSupported) description.append(std::to_string(supported)).append(" ");
  throw failure(FailureNumber::kInvalidCall, to_utf16(description.append("and utf-8")));
}

}  // namespace kavo
