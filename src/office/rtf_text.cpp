#include "office/rtf_text.h"

#include <charconv>

#include "platform/failure.h"

namespace kavo {

std::string marker_text(std::uint64_t number) {
  std::string text(kMarkerStart);
  text += std::to_string(number);
  text += kMarkerEnd;
  return text;
}

std::optional<Marker> read_marker(const char* p, const char* end) {
  constexpr std::ptrdiff_t kMostDigits = 10;
  if (!begins_with(p, end, kMarkerStart)) return std::nullopt;
  const char* const digits = p + kMarkerStart.size();
  std::uint64_t number = 0;
  const char* const digits_end = std::from_chars(digits, ahead(digits, kMostDigits, end), number).ptr;
  if (digits_end == digits || *digits == '0' || !begins_with(digits_end, end, kMarkerEnd)) return std::nullopt;
  return Marker{number, static_cast<std::size_t>(digits_end - p) + kMarkerEnd.size()};
}

BlockReader open_rtf(std::u16string_view path) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF", white_space = " \t\r\n\v\f", signature = "{\\rtf";
  BlockReader document(path);
  const auto begins_with = [&](std::string_view text) {
    while (document.window().size() < text.size() && document.more()) {
    }
    return document.window().starts_with(text);
  };
  if (begins_with(byte_order_mark)) document.consume(byte_order_mark.size());
  do {
    document.consume(std::min(document.window().find_first_not_of(white_space), document.window().size()));
  } while (document.window().empty() && document.more());
  if (!begins_with(signature))
    throw failure(FailureNumber::kInvalidCall, u"This is not an RTF document: it does not begin with {\\rtf");
  if (document.position() != 0) document.seek(0);
  return document;
}

}  // namespace kavo
