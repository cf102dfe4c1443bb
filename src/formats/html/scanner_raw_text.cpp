// Elements that hold no tags: scripts, style sheets, titles.
#include <algorithm>

#include "common/byte_scan.h"
#include "formats/html/elements.h"
#include "formats/html/scanner.h"
#include "formats/text/ascii.h"

namespace kavo {

// Called at "</". True when that begins the end tag of the element.
bool HtmlScanner::at_end_tag(std::uint64_t name, std::uint64_t keep) {
  std::uint64_t hash = kNameHashSeed;
  constexpr std::size_t kLongestName = 16;
  for (std::size_t ahead = 2; ahead < 2 + kLongestName; ++ahead) {
    const int c = byte_at(ahead, keep);
    if (c == -1) return false;
    if (html::is_html_space(c) || c == '/' || c == '>') return hash == name;
    hash = add_to_name_hash(hash, lower(static_cast<char>(c)));
  }
  return false;
}

// Skips text in which character references count and tags do not. A ">" that would end a tag or a comment elsewhere,
// such as a script's placeholder, is not stray here either, so brackets are stray by one rule everywhere.
const Token& HtmlScanner::skip_rcdata(std::uint64_t name) {
  enum class Inside : std::uint8_t { kText, kMarkup, kComment } inside = Inside::kText;
  std::uint64_t comment = 0;  // where its content begins
  for (;;) {
    const std::uint64_t keep = inside == Inside::kComment ? p_ - std::min<std::uint64_t>(2, p_ - comment) : p_;
    token_.begin = keep;
    if (byte_at(0, keep) == -1) return finish(PageTokenKind::kEnd);
    const std::string_view window = reader_.window();
    const char* const begin = window.data() + (p_ - reader_.position());
    const char* const end = window.data() + window.size();
    const char* const found = find_any<'<', '>'>(begin, end);
    p_ += static_cast<std::uint64_t>(found - begin);
    if (found == end) continue;
    if (*found == '>') {
      const bool ends_comment = inside == Inside::kComment && p_ - comment >= 2 && found[-1] == '-' && found[-2] == '-';
      if (inside == Inside::kText) listener_.stray_in_text(p_, false);
      if (inside == Inside::kMarkup || ends_comment) inside = Inside::kText;
      ++p_;
      continue;
    }
    token_.begin = p_;
    const int second = byte_at(1, p_);
    if (second == '/' && at_end_tag(name, p_)) return tag(PageTokenKind::kEndTag, 2);
    if (inside == Inside::kText) {
      if (second == '!' && byte_at(2, p_) == '-' && byte_at(3, p_) == '-') {
        inside = Inside::kComment;
        p_ += 4;
        comment = p_;
        continue;
      }
      if (second == '?') listener_.processing_instruction(p_);
      if (is_letter(second) || second == '/' || second == '!' || second == '?')
        inside = Inside::kMarkup;
      else
        listener_.stray_in_text(p_, true);
    }
    ++p_;
  }
}

const Token& HtmlScanner::skip_raw_text(Content content, std::uint64_t name) {
  if (tag_goes_on_) {
    rest_of_tag();
    if (ended_inside_) return finish(PageTokenKind::kEnd);
  }
  if (content == Content::kRcdata) return skip_rcdata(name);
  // Inside a script: "<!--" hides nothing, but after "<!--" and "<script" the next "</script" ends only that.
  enum class Script : std::uint8_t { kData, kEscaped, kDoubleEscaped } script = Script::kData;
  std::uint64_t escaped_from = 0;  // first dash that may end the escape
  token_.begin = p_;
  for (;;) {
    const std::uint64_t keep = script == Script::kData ? p_ : p_ - std::min<std::uint64_t>(2, p_ - escaped_from);
    token_.begin = keep;
    if (byte_at(0, keep) == -1) {
      ended_inside_ = content == Content::kPlainText || script == Script::kDoubleEscaped;
      return finish(PageTokenKind::kEnd);
    }
    const std::string_view window = reader_.window();
    const char* begin = window.data() + (p_ - reader_.position());
    const char* end = window.data() + window.size();
    const char* found = content == Content::kPlainText ? end
                        : script == Script::kData      ? find_any<'<'>(begin, end)
                                                       : find_any<'<', '>'>(begin, end);
    p_ += static_cast<std::uint64_t>(found - begin);
    if (found == end) continue;
    if (*found == '>') {
      if (p_ - escaped_from >= 2 && found[-1] == '-' && found[-2] == '-') script = Script::kData;
      ++p_;
      continue;
    }
    const std::uint64_t here = script == Script::kData ? p_ : p_ - std::min<std::uint64_t>(2, p_ - escaped_from);
    if (byte_at(1, here) == '/') {
      if (at_end_tag(name, here)) {
        if (script != Script::kDoubleEscaped) {
          token_.begin = p_;
          return tag(PageTokenKind::kEndTag, 2);
        }
        script = Script::kEscaped;
      }
    } else if (content == Content::kScript) {
      if (script == Script::kData && byte_at(1, here) == '!' && byte_at(2, here) == '-' && byte_at(3, here) == '-') {
        script = Script::kEscaped;
        escaped_from = p_ + 2;
        p_ += 4;
        continue;
      }
      constexpr std::string_view kScript = "script";
      if (script == Script::kEscaped && at_name(1, kScript, here)) {
        const int after = byte_at(1 + kScript.size(), here);
        if (html::is_html_space(after) || after == '/' || after == '>') script = Script::kDoubleEscaped;
      }
    }
    ++p_;
  }
}

}  // namespace kavo
