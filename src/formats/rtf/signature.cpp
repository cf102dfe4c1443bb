#include "formats/rtf/signature.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/failure.h"

namespace kavo::rtf {
namespace {

constexpr std::string_view kSignature = "{\\rtf";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";
// Nobody writes more white space in front of a document.
constexpr std::size_t kReach = 64 * 1024;  // bytes

}  // namespace

void refuse_other_formats(BlockReader& document) {
  std::size_t begin = 0;
  do {
    const std::string_view window = document.window();
    begin = window.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    begin = std::min(window.find_first_not_of(kWhiteSpace, begin), window.size());
  } while (document.window().size() - begin < kSignature.size() && begin < kReach && document.more());
  if (!document.window().substr(begin).starts_with(kSignature))
    throw failure(FailureNumber::kInvalidCall, u"This is not an RTF document: it does not begin with {\\rtf");
}

}  // namespace kavo::rtf
