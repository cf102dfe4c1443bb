#include "html/repair/page_ahead.h"

#include <algorithm>

#include "formats/html/attributes.h"
#include "formats/html/elements.h"

namespace kavo {
namespace {

// The end of a page ("</body></html>" and comments) is recognised within its last bytes.
constexpr std::size_t kLongestEnd = 8192;
// How far white space inside a table is searched for text after it.
constexpr std::size_t kLongestBlank = 64 * 1024;

}  // namespace

// The length of a character reference at the start of `text` that means white space; 0 when none stands there.
std::size_t blank_reference(std::string_view text) {
  for (const std::string_view name : {"&Tab;", "&NewLine;"})
    if (text.starts_with(name)) return name.size();
  if (!text.starts_with("&#")) return 0;
  std::size_t i = 2;
  const bool hex = i < text.size() && (text[i] == 'x' || text[i] == 'X');
  if (hex) ++i;
  const std::size_t digits = i;
  unsigned value = 0;
  for (; i < text.size() && value < 256; ++i) {
    const char c = text[i];
    if (c >= '0' && c <= '9')
      value = value * (hex ? 16 : 10) + static_cast<unsigned>(c - '0');
    else if (hex && ((c | 32) >= 'a' && (c | 32) <= 'f'))
      value = value * 16 + static_cast<unsigned>((c | 32) - 'a' + 10);
    else
      break;
  }
  if (i == digits || value >= 256 || !html::is_html_space(static_cast<char>(value))) return 0;
  return i < text.size() && text[i] == ';' ? i + 1 : i;
}

bool PageAhead::text_follows(std::uint64_t position) {
  for (std::size_t size = 64; size <= kLongestBlank; size *= 4) {
    const std::string_view ahead = scanner_.look_ahead(position, size);
    const auto found =
        std::find_if(ahead.begin(), ahead.end(), [](char c) { return !html::is_html_space(c) && c != '\0'; });
    if (found == ahead.end()) {
      if (ahead.size() < size) return false;
      continue;
    }
    if (*found != '<') return true;
    const auto offset = static_cast<std::uint64_t>(found - ahead.begin());
    const std::string_view markup = scanner_.look_ahead(position + offset, 2);
    if (markup.size() < 2) return true;
    const char c = markup[1];
    return !((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '/' || c == '!' || c == '?');
  }
  return false;
}

PageRest PageAhead::rest(std::uint64_t position, bool is_ended, bool body_end_counts) {
  if (reader_.size() - position > kLongestEnd) return PageRest::kMore;
  PageRest result = PageRest::kEnd;
  std::string_view text = scanner_.look_ahead(position, kLongestEnd);
  while (!text.empty()) {
    std::size_t size = html::is_html_space(text[0]) ? 1 : blank_reference(text);
    if (size != 0) result = PageRest::kBlankEnd;
    if (size == 0 && is_ended && text.starts_with("<!--")) {
      size = text.find("-->", 4);
      if (size == std::string_view::npos || text[4] == '>' || text.substr(4, 2) == "->" || text.find("--!>", 4) < size)
        return PageRest::kMore;
      size += 3;
    } else if (size == 0) {
      if (text.size() < 7 || !text.starts_with("</")) return PageRest::kMore;
      const std::string_view name = text.substr(2, 4);
      if (!equals_ignoring_case(name, "body") && !equals_ignoring_case(name, "html")) return PageRest::kMore;
      size = text.find('>');
      if (size == std::string_view::npos || (size != 6 && !html::is_html_space(text[6]))) return PageRest::kMore;
      ++size;
      is_ended = is_ended || body_end_counts;
    }
    text.remove_prefix(size);
  }
  return result;
}

}  // namespace kavo
