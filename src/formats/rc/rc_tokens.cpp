#include "formats/rc/rc_tokens.h"

#include <algorithm>

#include "formats/text/ascii.h"

namespace kavo::rc {
namespace {

// No word is nearly so long; longer text without blanks is cut.
constexpr std::size_t kLongestWord = 4096;  // bytes

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\f' || c == '\v' || is_line_end(c); }
bool is_mark(char c) { return c == ',' || c == '(' || c == ')' || c == '{' || c == '}' || c == '|'; }

// The length of a backslash and the line end after it, which join two lines; 0 for any other backslash.
std::size_t joint_length(std::string_view bytes, std::size_t at) {
  if (bytes[at] != '\\' || at + 1 >= bytes.size() || !is_line_end(bytes[at + 1])) return 0;
  return bytes.substr(at + 1).starts_with("\r\n") ? 3 : 2;
}

}  // namespace

bool RcTokenScanner::give(RcToken& token, RcTokenKind kind, std::string_view bytes, State next) {
  token = {kind, bytes};
  state_ = next;
  searched_ = 0;
  if (kind != RcTokenKind::kBlank && kind != RcTokenKind::kComment) is_line_start_ = false;
  return true;
}

bool RcTokenScanner::next(std::string_view bytes, bool is_all, RcToken& token) {
  switch (state_) {
    case State::kLineComment:
      return line_comment(bytes, is_all, token);
    case State::kBlockComment:
      return block_comment(bytes, is_all, token);
    case State::kDirectiveRest:
      return directive_rest(bytes, is_all, token);
    case State::kLongLiteral:
      return long_literal(bytes, is_all, token);
    case State::kBetween:
      break;
  }
  const char c = bytes.front();
  if (is_blank(c)) return blank(bytes, token);
  if (c == '#' && is_line_start_) return directive(bytes, is_all, token);
  if (c == '"') return literal(bytes, 0, is_all, token);
  if (is_mark(c)) return give(token, RcTokenKind::kMark, bytes.substr(0, 1), State::kBetween);
  const bool needs_next = c == '/' || c == '\\' || c == 'L' || c == 'l';
  if (needs_next && bytes.size() == 1 && !is_all) return false;
  if (c == '/' && bytes.starts_with("//")) return line_comment(bytes, is_all, token);
  if (c == '/' && bytes.starts_with("/*")) {
    if (bytes.size() < 4 && !is_all) return false;
    const std::size_t end = bytes.find("*/", 2);
    if (end != std::string_view::npos) return give(token, RcTokenKind::kComment, bytes.substr(0, end + 2), state_);
    return give(token, RcTokenKind::kComment, bytes.substr(0, 2), State::kBlockComment);
  }
  if (c == '\\') {
    if (bytes.size() == 2 && bytes[1] == '\r' && !is_all) return false;
    if (const std::size_t joint = joint_length(bytes, 0); joint != 0)
      return give(token, RcTokenKind::kBlank, bytes.substr(0, joint), State::kBetween);
  }
  if (needs_next && c != '/' && c != '\\' && bytes.size() > 1 && bytes[1] == '"')
    return literal(bytes, 1, is_all, token);
  return word(bytes, is_all, token);
}

bool is_macro_name(std::string_view word) {
  return !word.empty() && !is_digit(word.front()) &&
         std::ranges::all_of(word, [](char c) { return is_letter(c) || is_digit(c) || c == '_'; });
}

bool ends_line(RcTokenKind kind, std::string_view bytes) {
  const bool is_joint = kind == RcTokenKind::kBlank && bytes.starts_with('\\');
  return !is_joint && bytes.find_first_of("\r\n") != std::string_view::npos;
}

bool RcTokenScanner::blank(std::string_view bytes, RcToken& token) {
  std::size_t end = 0;
  for (; end < bytes.size() && is_blank(bytes[end]); ++end)
    if (is_line_end(bytes[end])) is_line_start_ = true;
  return give(token, RcTokenKind::kBlank, bytes.substr(0, end), State::kBetween);
}

bool RcTokenScanner::line_comment(std::string_view bytes, bool is_all, RcToken& token) {
  std::size_t at = 0;
  while (at < bytes.size() && !is_line_end(bytes[at])) {
    if (bytes[at] == '\\' || is_lead(bytes[at])) {
      if (at + 2 >= bytes.size() && !is_all) break;
      const std::size_t joint = joint_length(bytes, at);
      const bool pair = joint == 0 && at + 1 < bytes.size() && is_pair(bytes[at], bytes[at + 1]);
      at += joint != 0 ? joint : pair ? 2 : 1;
    } else {
      ++at;
    }
  }
  const bool is_complete = at < bytes.size() && is_line_end(bytes[at]);
  if (at == 0 && is_complete) {
    state_ = State::kBetween;
    is_in_directive_ = false;
    return blank(bytes, token);
  }
  if (at == 0) return false;
  if (is_complete) is_in_directive_ = false;
  return give(token, RcTokenKind::kComment, bytes.substr(0, at), is_complete ? State::kBetween : State::kLineComment);
}

bool RcTokenScanner::block_comment(std::string_view bytes, bool is_all, RcToken& token) {
  const State behind = is_in_directive_ ? State::kDirectiveRest : State::kBetween;
  const std::size_t end = bytes.find("*/");
  if (end != std::string_view::npos) return give(token, RcTokenKind::kComment, bytes.substr(0, end + 2), behind);
  if (bytes.back() == '*' && !is_all) bytes.remove_suffix(1);
  if (bytes.empty()) return false;
  return give(token, RcTokenKind::kComment, bytes, State::kBlockComment);
}

bool RcTokenScanner::directive(std::string_view bytes, bool is_all, RcToken& token) {
  bool is_quoted = false;
  std::size_t at = 1;
  for (; at < bytes.size() && !is_line_end(bytes[at]); ++at) {
    const char c = bytes[at];
    if (c != '\\' && c != '/' && c != '"' && !is_lead(c)) continue;
    if (c == '"') {
      is_quoted = !is_quoted;
      continue;
    }
    if (at + 2 >= bytes.size() && !is_all && at < kLongestLiteral) return false;
    if (c == '/' && !is_quoted && at + 1 < bytes.size() && (bytes[at + 1] == '/' || bytes[at + 1] == '*')) {
      is_in_directive_ = true;
      return give(token, RcTokenKind::kDirective, bytes.substr(0, at), State::kDirectiveRest);
    }
    if (const std::size_t joint = joint_length(bytes, at); joint != 0)
      at += joint - 1;
    else if (at + 1 < bytes.size() && is_pair(c, bytes[at + 1]))
      ++at;
  }
  const bool is_complete = at < bytes.size() || is_all;
  if (!is_complete && at <= kLongestLiteral) return false;
  at = std::min(at, bytes.size());
  if (at <= kLongestLiteral) return give(token, RcTokenKind::kDirective, bytes.substr(0, at), State::kBetween);
  is_in_directive_ = !is_complete;
  return give(token, RcTokenKind::kRest, bytes.substr(0, at), is_complete ? State::kBetween : State::kDirectiveRest);
}

bool RcTokenScanner::directive_rest(std::string_view bytes, bool is_all, RcToken& token) {
  if (bytes.front() == '/' && bytes.size() == 1 && !is_all) return false;
  if (bytes.starts_with("//")) return line_comment(bytes, is_all, token);
  if (bytes.starts_with("/*")) return give(token, RcTokenKind::kComment, bytes.substr(0, 2), State::kBlockComment);
  std::size_t at = 0;
  for (; at < bytes.size() && !is_line_end(bytes[at]); ++at) {
    if (bytes[at] == '/' && at != 0 && (at + 1 >= bytes.size() || bytes[at + 1] == '/' || bytes[at + 1] == '*')) break;
    if (bytes[at] != '\\') continue;
    if (at + 2 >= bytes.size() && !is_all) break;
    if (const std::size_t joint = joint_length(bytes, at); joint != 0) at += joint - 1;
  }
  at = std::min(at, bytes.size());
  if (at == 0 && is_line_end(bytes.front())) {
    is_in_directive_ = false;
    return blank(bytes, token);
  }
  if (at == 0) return false;
  return give(token, RcTokenKind::kRest, bytes.substr(0, at), State::kDirectiveRest);
}

bool RcTokenScanner::find_literal_end(std::string_view bytes, bool is_all, std::size_t& at) const {
  while (at < bytes.size()) {
    const char c = bytes[at];
    if (c != '"' && c != '\\' && !is_lead(c)) {
      ++at;
      continue;
    }
    if (at + 1 >= bytes.size()) {
      if (!is_all) return false;
      ++at;
      return c == '"';
    }
    const char next = bytes[at + 1];
    if (c == '"') {
      if (next != '"') {
        ++at;
        return true;
      }
      at += 2;
    } else if (c == '\\' && next == '"') {
      const std::size_t other = bytes.find_first_of("\"\r\n", at + 2);
      if (other == std::string_view::npos && !is_all && bytes.size() - at <= kLongestLiteral) return false;
      at += 2;
      if (other == std::string_view::npos || bytes[other] != '"') return true;
    } else {
      // A quote that is a trail byte or comes after a backslash does not end the literal.
      at += (c == '\\' && is_lead(next)) || (is_lead(c) && !is_trail_byte(next)) ? 1 : 2;
    }
  }
  return false;
}

bool RcTokenScanner::literal(std::string_view bytes, std::size_t prefix, bool is_all, RcToken& token) {
  std::size_t at = std::max(searched_, prefix + 1);
  const bool is_closed = find_literal_end(bytes, is_all, at);
  if (!is_closed && !is_all && at <= kLongestLiteral) {
    searched_ = at;
    return false;
  }
  // The limit counts even if the end is in sight, so that the result does not depend on the size of blocks.
  const bool is_literal = is_closed && at <= kLongestLiteral;
  return give(token, is_literal ? RcTokenKind::kLiteral : RcTokenKind::kRest, bytes.substr(0, at),
              is_closed ? State::kBetween : State::kLongLiteral);
}

bool RcTokenScanner::long_literal(std::string_view bytes, bool is_all, RcToken& token) {
  std::size_t at = 0;
  const bool is_closed = find_literal_end(bytes, is_all, at);
  if (at == 0) return false;
  return give(token, RcTokenKind::kRest, bytes.substr(0, at), is_closed ? State::kBetween : State::kLongLiteral);
}

bool RcTokenScanner::word(std::string_view bytes, bool is_all, RcToken& token) {
  std::size_t at = 0;
  for (; at < bytes.size() && at < kLongestWord; ++at) {
    const char c = bytes[at];
    if (is_blank(c) || is_mark(c) || c == '"') break;
    const bool may_end = at != 0 && (c == '/' || c == '\\');
    if (may_end && at + 1 < bytes.size() && c == '/' && (bytes[at + 1] == '/' || bytes[at + 1] == '*')) break;
    if (may_end && joint_length(bytes, at) != 0) break;
  }
  if (at == bytes.size() && at < kLongestWord && !is_all) return false;
  // Does not cut a UTF-8 character.
  while (!coding_ && at > 1 && at < bytes.size() && (static_cast<unsigned char>(bytes[at]) & 0xC0) == 0x80) --at;
  return give(token, RcTokenKind::kWord, bytes.substr(0, at), State::kBetween);
}

}  // namespace kavo::rc
