#include "mif/mif_coding.h"

#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

bool is_plain(std::string_view bytes) {
  for (const char c : bytes)
    if (static_cast<unsigned char>(c) >= 0x80 || c == '\\') return false;
  return true;
}

}  // namespace

MifCoding MifCoding::of(std::string_view beginning) {
  MifCoding coding;
  coding.document_ = mif::coding_of(beginning, ports().code_page->number());
  coding.strings_ = std::make_shared<mif::StringCoding>(coding.document_.code_page, coding.document_.is_utf8);
  coding.double_byte_ = coding.strings_->is_double_byte();
  return coding;
}

// A byte that is not a lead byte ends a character. So the lead bytes after it form pairs, and an odd number of them
// before p makes p a trail byte.
bool MifCoding::follows_lead_byte(const char* begin, const char* p) const {
  const char* first = p;
  while (first != begin && strings_->bytes().is_lead_byte(static_cast<unsigned char>(first[-1]))) --first;
  return (p - first) % 2 != 0;
}

std::u16string MifCoding::decode(std::string_view bytes) const {
  if (is_plain(bytes)) return {bytes.begin(), bytes.end()};
  std::string text;
  mif::StringReader reader(bytes, *strings_);
  for (mif::StringPart part; reader.next(part);) {
    if (part.kind == mif::StringPart::Kind::kText) {
      text += part.text;
    } else if (part.kind == mif::StringPart::Kind::kRun) {
      strings_->bytes().decode(part.bytes, text, [&](std::string_view piece) { text += piece; });
    } else {
      text += part.bytes;
    }
  }
  return to_utf16(text);
}

}  // namespace kavo
