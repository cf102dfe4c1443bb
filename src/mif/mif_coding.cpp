#include "mif/mif_coding.h"

#include <charconv>
#include <optional>

#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr int kFirstUtf8Version = 8;

// 0x80 to 0xFF of the MIF character set. 0: no character, or one on which its versions differ.
constexpr char16_t kUpperHalf[128] = {
    u'Ä', u'Å', u'Ç', u'É', u'Ñ', u'Ö', u'Ü', u'á', u'à', u'â', u'ä', u'ã', u'å', u'ç', u'é', u'è', u'ê', u'ë', u'í',
    u'ì', u'î', u'ï', u'ñ', u'ó', u'ò', u'ô', u'ö', u'õ', u'ú', u'ù', u'û', u'ü', u'†', u'°', u'¢', u'£', u'§', u'•',
    u'¶', u'ß', u'®', u'©', u'™', u'´', u'¨', 0,    u'Æ', u'Ø', 0,    u'±', 0,    0,    u'¥', u'µ', 0,    0,    0,
    0,    0,    u'ª', u'º', 0,    u'æ', u'ø', u'¿', u'¡', u'¬', 0,    u'ƒ', 0,    0,    u'«', u'»', u'…', 0,    u'À',
    u'Ã', u'Õ', u'Œ', u'œ', u'–', u'—', u'“', u'”', u'‘', u'’', 0,    0,    u'ÿ', u'Ÿ', u'⁄', u'¤', u'‹', u'›', u'ﬁ',
    u'ﬂ', u'‡', u'·', u'‚', u'„', u'‰', u'Â', u'Ê', u'Á', u'Ë', u'È', u'Í', u'Î', u'Ï', u'Ì', u'Ó', u'Ô', 0,    u'Ò',
    u'Ú', u'Û', u'Ù', u'ı', u'ˆ', u'˜', u'¯', u'˘', u'˙', u'˚', u'¸', u'˝', u'˛', u'ˇ',
};

bool is_plain(std::string_view bytes) {
  for (const char c : bytes)
    if (static_cast<unsigned char>(c) >= 0x80 || c == '\\') return false;
  return true;
}

// The character that an escape of a MIF string stands for, and its length in bytes. Nothing for an unknown one.
struct Escape {
  char16_t character;
  std::size_t length;
};
std::optional<Escape> escape_at(std::string_view text) {
  if (text.size() < 2) return std::nullopt;
  switch (text[1]) {
    case 't':
      return Escape{u'\t', 2};
    case '>':
      return Escape{u'>', 2};
    case 'q':
      return Escape{u'\'', 2};
    case 'Q':
      return Escape{u'`', 2};
    case '\\':
      return Escape{u'\\', 2};
    case 'x':
      break;
    default:
      return std::nullopt;
  }
  unsigned code = 0;
  const std::string_view digits = text.substr(2, 2);
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
  if (error != std::errc() || stop != digits.data() + 2) return std::nullopt;
  char16_t character = static_cast<char16_t>(code);
  if (code >= 0x80) {
    character = kUpperHalf[code - 0x80];
    if (character == 0) return std::nullopt;
  }
  return Escape{character, text.substr(4, 1) == " " ? std::size_t{5} : std::size_t{4}};
}

}  // namespace

MifCoding MifCoding::of(std::string_view beginning) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  constexpr std::string_view opening = "<MIFFile ";
  MifCoding coding;
  coding.utf8_ = beginning.starts_with(mark);
  if (coding.utf8_) beginning.remove_prefix(mark.size());
  if (beginning.starts_with(opening)) {
    int version = 0;
    std::from_chars(beginning.data() + opening.size(), beginning.data() + beginning.size(), version);
    coding.utf8_ = coding.utf8_ || version >= kFirstUtf8Version;
  }
  if (!coding.utf8_)
    for (int byte = 0x80; byte < 0x100; ++byte)
      coding.double_byte_ = coding.double_byte_ || ports().code_page->is_lead_byte(static_cast<unsigned char>(byte));
  return coding;
}

// A byte that is no lead byte ends a character, so the lead bytes before p pair up from there.
bool MifCoding::follows_lead_byte(const char* begin, const char* p) {
  const char* first = p;
  while (first != begin && ports().code_page->is_lead_byte(static_cast<unsigned char>(first[-1]))) --first;
  return (p - first) % 2 != 0;
}

std::u16string MifCoding::decode(std::string_view bytes) const {
  if (is_plain(bytes)) return {bytes.begin(), bytes.end()};
  const auto raw = [this](std::string_view run) { return utf8_ ? to_utf16(run) : ports().code_page->decode(run); };
  std::u16string text;
  std::size_t run = 0;
  for (std::size_t at = 0; at < bytes.size();) {
    if (bytes[at] != '\\' || is_trail_byte(bytes.data(), bytes.data() + at)) {
      ++at;
    } else if (const auto escape = escape_at(bytes.substr(at))) {
      text += raw(bytes.substr(run, at - run));
      text += escape->character;
      run = at += escape->length;
    } else {
      ++at;
    }
  }
  return text += raw(bytes.substr(run));
}

}  // namespace kavo
