#include "formats/html/scanner.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "formats/html/elements.h"
#include "formats/html/script_marker.h"
#include "formats/text/ascii.h"
#include "platform/ports.h"

namespace kavo {
namespace {}  // namespace

HtmlScanner::HtmlScanner(BlockReader& reader, ScannerListener& listener) : reader_(reader), listener_(listener) {
  p_ = reader_.position();
}

bool HtmlScanner::refill(std::uint64_t keep) {
  if (reader_.exhausted()) return false;
  listener_.release(keep);
  reader_.consume(static_cast<std::size_t>(keep - reader_.position()));
  if (!reader_.more()) return false;
  listener_.block_read();
  return true;
}

std::string_view HtmlScanner::look_ahead(std::uint64_t position, std::size_t size) {
  while (reader_.bytes_read() < position + size && refill(token_.begin)) {
  }
  const std::uint64_t end = std::min<std::uint64_t>(reader_.bytes_read(), position + size);
  return view(position, end);
}

int HtmlScanner::byte_beyond(std::size_t ahead, std::uint64_t keep) {
  while (p_ + ahead >= reader_.bytes_read())
    if (!refill(keep)) return -1;
  return byte_at(ahead, keep);
}

const Token& HtmlScanner::finish(PageTokenKind kind) {
  token_.kind = kind;
  token_.end = p_;
  return token_;
}

const Token& HtmlScanner::next(bool cdata_allowed) {
  if (tag_goes_on_) rest_of_tag();
  token_.begin = p_;
  const int first = byte_at(0, p_);
  if (first == -1) return finish(PageTokenKind::kEnd);
  if (first == '<') return markup(cdata_allowed);
  if (first == '>') {
    ++p_;
    return finish(PageTokenKind::kStrayGreater);
  }
  const std::string_view window = reader_.window();
  const char* begin = window.data() + (p_ - reader_.position());
  const char* found = find_any<'<', '>'>(begin, window.data() + window.size());
  p_ += static_cast<std::uint64_t>(found - begin);
  return finish(PageTokenKind::kText);
}

const Token& HtmlScanner::markup(bool cdata_allowed) {
  const int second = byte_at(1, p_);
  if (is_letter(second)) return tag(PageTokenKind::kStartTag, 1);
  if (second == '/') {
    const int third = byte_at(2, p_);
    if (is_letter(third)) return tag(PageTokenKind::kEndTag, 2);
    p_ += 2;
    if (third == -1) {
      ended_inside_ = true;  // an end tag written here would be read together with it
      return finish(PageTokenKind::kText);
    }
    skip_past('>');
    return finish(PageTokenKind::kComment);
  }
  if (second == '?') {
    listener_.processing_instruction(p_);
    p_ += 1;
    skip_past('>');
    return finish(PageTokenKind::kComment);
  }
  if (second == '!') {
    if (byte_at(2, p_) == '-' && byte_at(3, p_) == '-') {
      listener_.comment(p_);
      p_ += 4;
      skip_comment();
      return finish(PageTokenKind::kComment);
    }
    if (at_name(2, "doctype", p_)) {
      read_doctype();
      return finish(PageTokenKind::kDoctype);
    }
    constexpr std::string_view kCdata = "[CDATA[";
    if (cdata_allowed && look_ahead(p_ + 2, kCdata.size()) == kCdata) {
      p_ += 2 + kCdata.size();
      skip_cdata();
      return finish(PageTokenKind::kCdata);
    }
    p_ += 2;
    skip_past('>');
    return finish(PageTokenKind::kComment);
  }
  ++p_;
  return finish(PageTokenKind::kStrayLess);
}

bool HtmlScanner::at_name(std::size_t ahead, std::string_view lower_name, std::uint64_t keep) {
  for (std::size_t i = 0; i < lower_name.size(); ++i) {
    const int c = byte_at(ahead + i, keep);
    if (c == -1 || lower(static_cast<char>(c)) != lower_name[i]) return false;
  }
  return true;
}

// Comments and the like. Their content is never held.

// Moves past the first `last` in the rest of the window, or to its end. Returns where `last` was found, or null.
const char* HtmlScanner::pass(char last) {
  const std::string_view rest = reader_.window().substr(static_cast<std::size_t>(p_ - reader_.position()));
  const std::size_t found = rest.find(last);
  p_ += found == std::string_view::npos ? rest.size() : found + 1;
  return found == std::string_view::npos ? nullptr : rest.data() + found;
}

void HtmlScanner::skip_past(char last) {
  for (;;) {
    if (byte_at(0, p_) == -1) {
      ended_inside_ = true;
      return;
    }
    if (pass(last)) return;
  }
}

// After "<!--". Ends with "-->" or "--!>", or at once with ">" or "->".
void HtmlScanner::skip_comment() {
  const std::uint64_t content = p_;
  for (;;) {
    const std::uint64_t keep = p_ - std::min<std::uint64_t>(3, p_ - content);
    if (byte_at(0, keep) == -1) {
      ended_inside_ = true;
      return;
    }
    const char* const found = pass('>');
    if (found == nullptr) continue;
    const std::uint64_t before = p_ - 1 - content;  // bytes of content before the ">"
    const auto dash = [&](std::uint64_t back) {
      return before >= back && found[-static_cast<std::ptrdiff_t>(back)] == '-';
    };
    if (before == 0 || (before == 1 && dash(1)) || (dash(1) && dash(2))) return;
    if (before >= 3 && found[-1] == '!' && dash(2) && dash(3)) return;
  }
}

void HtmlScanner::skip_cdata() {
  const std::uint64_t content = p_;
  for (;;) {
    if (byte_at(0, p_ - std::min<std::uint64_t>(2, p_ - content)) == -1) {
      ended_inside_ = true;
      return;
    }
    const char* const found = pass('>');
    if (found && p_ - content >= 3 && found[-1] == ']' && found[-2] == ']') return;
  }
}

void HtmlScanner::read_doctype() {
  for (;;) {
    const std::uint64_t keep = p_ - token_.begin < kLongestDoctype ? token_.begin : p_;
    const int c = byte_at(0, keep);
    if (c == -1) {
      ended_inside_ = true;
      return;
    }
    ++p_;
    if (c == '>') return;
  }
}

// Tags.

const Token& HtmlScanner::tag(PageTokenKind kind, std::size_t name_at) {
  token_.kind = kind;
  token_.self_closing = false;
  token_.whole = true;
  token_.name = kNameHashSeed;
  p_ += name_at;
  state_ = TagState::kName;
  bool plain = true;  // no byte beyond ASCII so far, so no letter is a trail byte
  for (bool ended = false; !ended;) {
    if (byte_at(0, token_.begin) == -1) {
      ended_inside_ = true;
      return finish(PageTokenKind::kEnd);
    }
    const std::string_view window = reader_.window();
    const char* const begin = window.data() + (p_ - reader_.position());
    const char* const end = window.data() + window.size();
    const char* p = begin;
    for (; p != end; ++p) {
      const char c = *p;
      if (c == '>' || c == '/' || html::is_html_space(c)) break;
      if (static_cast<unsigned char>(c) >= 0x80) plain = false;
      token_.name = add_to_name_hash(token_.name, plain ? lower(c) : c);
    }
    p_ += static_cast<std::uint64_t>(p - begin);
    ended = p != end || p_ - token_.begin >= kLongestTag;
  }
  token_.tag = tag_of(token_.name);
  if (byte_at(0, token_.begin) == '>') {  // most tags consist of a name only
    ++p_;
    return finish(kind);
  }
  return rest_of_tag();
}

const Token& HtmlScanner::rest_of_tag() {
  const bool going_on = tag_goes_on_;
  const PageTokenKind kind = token_.kind;
  tag_goes_on_ = false;
  std::uint64_t keep = going_on ? p_ : token_.begin;
  for (;;) {
    if (byte_at(0, keep) == -1) {
      ended_inside_ = true;
      return finish(PageTokenKind::kEnd);
    }
    if (!going_on && p_ - token_.begin >= kLongestTag) {
      tag_goes_on_ = true;
      token_.whole = false;
      return finish(kind);
    }
    const std::size_t ahead = read_tag();
    if (ahead == 0) return finish(kind);
    if (p_ < reader_.bytes_read()) byte_at(ahead, keep);
  }
}

// Takes bytes of the tag, up to its end or the end of the window. Returns how many further bytes decide what comes
// next, or 0 at the end of the tag.
std::size_t HtmlScanner::read_tag() {
  const std::string_view window = reader_.window();
  const char* const begin = window.data() + (p_ - reader_.position());
  const char* const end = window.data() + window.size();
  const std::uint64_t from = p_;
  const auto take_to = [&](const char* p) { p_ = from + static_cast<std::uint64_t>(p - begin); };
  const auto report_server_code = [&](const char* p, char quote) {
    if (p + 1 != end && (p[1] == '%' || p[1] == '?'))
      listener_.server_code_in_tag(from + static_cast<std::uint64_t>(p - begin), quote);
  };
  const char* p = begin;
  for (; p != end; ++p) {
    if (*p == '<' && p + 1 == end && !reader_.exhausted()) break;  // what follows says whether it is server code
    if (state_ == TagState::kDouble || state_ == TagState::kSingle) {
      const char quote = state_ == TagState::kDouble ? '"' : '\'';
      p = quote == '"' ? find_any<'"', '<'>(p, end) : find_any<'\'', '<'>(p, end);
      if (p == end) break;
      if (*p == quote)
        state_ = TagState::kAfterQuoted;
      else
        report_server_code(p, quote);
    } else if (*p == '>') {
      token_.self_closing = state_ == TagState::kSlash;
      take_to(p + 1);
      return 0;
    } else if (*p == '"' && state_ == TagState::kUnquoted) {
      const std::optional<std::size_t> placeholder = quoted_placeholder({p, end});
      if (!placeholder) {
        take_to(p);
        return html::placeholder::kLongestPlaceholder;
      }
      if (*placeholder != 0) p += *placeholder - 1;
    } else {
      step(*p);
      if (*p == '<') report_server_code(p, 0);
    }
  }
  take_to(p);
  return 1;
}

// Protection puts the placeholder of a script directly after an unquoted value, and its ">" does not end the tag.
// Returns the length of the placeholder at the start of `bytes`, which begin with a quote; 0 when there is none;
// nothing when more bytes are needed to decide.
std::optional<std::size_t> HtmlScanner::quoted_placeholder(std::string_view bytes) const {
  using namespace html::placeholder;
  if (bytes.size() < kLongestPlaceholder && !reader_.exhausted()) return std::nullopt;
  return quoted_length(bytes);
}

// Takes a character that is outside quotes and does not end the tag.
void HtmlScanner::step(char c) {
  const bool is_after_name = state_ == TagState::kAttributeName || state_ == TagState::kAfterName;
  if (state_ == TagState::kUnquoted) {
    if (html::is_html_space(c)) state_ = TagState::kBeforeName;
  } else if (state_ == TagState::kBeforeValue) {
    if (!html::is_html_space(c))
      state_ = c == '"' ? TagState::kDouble : c == '\'' ? TagState::kSingle : TagState::kUnquoted;
  } else if (c == '/') {
    state_ = TagState::kSlash;
  } else if (html::is_html_space(c)) {
    state_ = is_after_name ? TagState::kAfterName : TagState::kBeforeName;
  } else {
    state_ = c == '=' && is_after_name ? TagState::kBeforeValue : TagState::kAttributeName;
  }
}

}  // namespace kavo
