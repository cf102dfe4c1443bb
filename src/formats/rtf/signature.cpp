#include "formats/rtf/signature.h"

#include <algorithm>
#include <string_view>

#include "platform/failure.h"

namespace kavo::rtf {
namespace {

constexpr std::string_view kSignature = "{\\rtf";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

}  // namespace

void refuse_other_formats(BlockReader& document) {
  const auto begins_with = [&](std::string_view text) {
    while (document.window().size() < text.size() && document.more()) {
    }
    return document.window().starts_with(text);
  };
  if (begins_with(kByteOrderMark)) document.consume(kByteOrderMark.size());
  // White space is skipped window by window, because there may be more of it than memory.
  do {
    document.consume(std::min(document.window().find_first_not_of(kWhiteSpace), document.window().size()));
  } while (document.window().empty() && document.more());
  if (!begins_with(kSignature))
    throw failure(FailureNumber::kInvalidCall, u"This is not an RTF document: it does not begin with {\\rtf");
  if (document.position() != 0) document.seek(0);
}

}  // namespace kavo::rtf
