#include "formats/mif/tokens.h"

#include "common/byte_scan.h"

namespace kavo::mif {
namespace {

// Far longer than the name of any statement.
constexpr std::size_t kLongestName = 64;  // bytes

bool is_name_character(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// The index of the first of kBytes from `from` on; the size when there is none.
template <char... kBytes>
std::size_t find_first(std::string_view bytes, std::size_t from) {
  const char* const begin = bytes.data();
  return static_cast<std::size_t>(find_any<kBytes...>(begin + from, begin + bytes.size()) - begin);
}

}  // namespace

bool MifTokenScanner::next(std::string_view bytes, bool is_all, MifToken& token) {
  if (state_ == State::kLongString) return long_string(bytes, token);
  if (state_ == State::kLineRest) return line_rest(bytes, token);
  switch (bytes.front()) {
    case '<':
      return opening(bytes, is_all, token);
    case '>':
      return give(token, MifTokenKind::kClose, bytes.substr(0, 1), State::kBetween);
    case '`':
      return string(bytes, is_all, token);
    case '\r':
    case '\n':
      return line_end(bytes, token);
    case '&':
    case '=':
      return state_ == State::kLineStart ? line_rest(bytes, token) : words(bytes, token);
    case '#':
      return state_ != State::kOpening ? line_rest(bytes, token) : words(bytes, token);
    default:
      return words(bytes, token);
  }
}

bool MifTokenScanner::give(MifToken& token, MifTokenKind kind, std::string_view bytes, State next) {
  token = {kind, bytes};
  state_ = next;
  return true;
}

bool MifTokenScanner::opening(std::string_view bytes, bool is_all, MifToken& token) {
  std::size_t end = 1;
  while (end < bytes.size() && end < kLongestName && is_name_character(bytes[end])) ++end;
  if (end == bytes.size() && !is_all) return false;
  return give(token, MifTokenKind::kOpen, bytes.substr(0, end), State::kOpening);
}

bool MifTokenScanner::string(std::string_view bytes, bool is_all, MifToken& token) {
  const std::size_t end = find_first<'\''>(bytes, searched_);
  if (end == bytes.size()) {
    searched_ = end;
    if (end <= kLongestString && !is_all) return false;
    searched_ = 0;
    return give(token, MifTokenKind::kRest, bytes, State::kLongString);
  }
  searched_ = 0;
  // The string counts as long even when its end is in sight, so that blocks of any size give the same tokens.
  const MifTokenKind kind = end < kLongestString ? MifTokenKind::kString : MifTokenKind::kRest;
  return give(token, kind, bytes.substr(0, end + 1), State::kOpening);
}

bool MifTokenScanner::long_string(std::string_view bytes, MifToken& token) {
  const std::size_t end = find_first<'\''>(bytes, 0);
  if (end == bytes.size()) return give(token, MifTokenKind::kRest, bytes, State::kLongString);
  return give(token, MifTokenKind::kRest, bytes.substr(0, end + 1), State::kOpening);
}

bool MifTokenScanner::line_end(std::string_view bytes, MifToken& token) {
  std::size_t end = 1;
  while (end < bytes.size() && (bytes[end] == '\r' || bytes[end] == '\n')) ++end;
  return give(token, MifTokenKind::kRest, bytes.substr(0, end), State::kLineStart);
}

bool MifTokenScanner::line_rest(std::string_view bytes, MifToken& token) {
  const std::size_t end = find_first<'\r', '\n'>(bytes, 0);
  if (end == 0) return line_end(bytes, token);
  return give(token, MifTokenKind::kRest, bytes.substr(0, end), State::kLineRest);
}

bool MifTokenScanner::words(std::string_view bytes, MifToken& token) {
  const bool is_blank = bytes.front() == ' ' || bytes.front() == '\t';
  std::size_t end = 1;
  if (is_blank)
    while (end < bytes.size() && (bytes[end] == ' ' || bytes[end] == '\t')) ++end;
  else
    end = find_first<'<', '>', '`', '\r', '\n', '#', ' ', '\t'>(bytes, 1);
  const State next = state_ == State::kLineStart ? State::kBetween : state_;
  return give(token, MifTokenKind::kRest, bytes.substr(0, end), next);
}

}  // namespace kavo::mif
