#include "formats/html/tokens.h"

#include <algorithm>
#include <utility>

#include "common/byte_scan.h"
#include "formats/html/elements.h"
#include "formats/html/script_marker.h"
#include "formats/text/ascii.h"

namespace kavo::html {
namespace {

// Markup that begins with "<" and is not a tag, with its end. The first row that matches counts.
struct Enclosed {
  std::string_view opener;  // small letters
  std::string_view closer;
  TokenKind kind;
  std::size_t inside;  // where its end may begin, since "<!-->" is a whole comment
};
constexpr Enclosed kEnclosed[] = {
    {"<!-- asp2html", "-->", TokenKind::kServerCode, 13},
    {"<!--", "-->", TokenKind::kComment, 2},
    {"<!", ">", TokenKind::kComment, 2},
    {"<%--", "--%>", TokenKind::kServerCode, 4},
    {"<%", "%>", TokenKind::kServerCode, 2},
    {"<?php", "?>", TokenKind::kServerCode, 5},
    {"<?=", "?>", TokenKind::kServerCode, 3},
    {"<? ", "?>", TokenKind::kServerCode, 3},
    {"<?\t", "?>", TokenKind::kServerCode, 3},
    {"<?\r", "?>", TokenKind::kServerCode, 3},
    {"<?\n", "?>", TokenKind::kServerCode, 3},
    {"<?xml:", ">", TokenKind::kComment, 6},  // as word processors write it
    {"<?xml", "?>", TokenKind::kComment, 5},
    {"<?", ">", TokenKind::kComment, 2},
};
constexpr std::size_t kLongestOpener = 13;

const Enclosed* find_enclosed(std::string_view bytes) {
  for (const Enclosed& row : kEnclosed)
    if (begins_with_ignoring_case(bytes.data(), bytes.data() + bytes.size(), row.opener)) return &row;
  return nullptr;
}

// How much of the end of a text may stand before the marker of a placeholder.
std::size_t possible_wrapping(std::string_view text) {
  const std::string_view whole = placeholder::kAttribute;
  for (std::size_t size = whole.size(); size > 0; --size)
    if (text.ends_with(whole.substr(0, size))) return size;
  return text.ends_with('"') ? 1 : 0;
}

std::size_t find(std::string_view bytes, std::size_t from, std::string_view text) {
  const char* const end = bytes.data() + bytes.size();
  return static_cast<std::size_t>(find_text(bytes.data() + std::min(from, bytes.size()), end, text) - bytes.data());
}

}  // namespace

std::size_t server_code_length(std::string_view bytes) {
  const Enclosed* const row = find_enclosed(bytes);
  if (!row || row->kind != TokenKind::kServerCode) return 0;
  const std::size_t end = find(bytes, row->inside, row->closer);
  return end == bytes.size() ? 0 : end + row->closer.size();
}

bool TokenScanner::has(std::size_t size) {
  while (input_.window().size() < size)
    if (!input_.more()) return false;
  return true;
}

bool TokenScanner::give(PageToken& token, TokenKind kind, std::size_t size) {
  token.kind = kind;
  token.bytes = input_.window().substr(0, size);
  taken_ = size;
  return true;
}

void TokenScanner::enter_raw_text(std::string_view name, bool has_references) {
  is_raw_ = true;
  raw_has_references_ = has_references;
  raw_name_ = name;
}

bool TokenScanner::next(PageToken& token) {
  input_.consume(std::exchange(taken_, 0));
  if (!has(1)) return false;
  if (rest_ == Rest::kEnclosed) return enclosed(token, TokenKind::kOverlong, closer_, 0);
  if (rest_ == Rest::kTag) return tag(token, TokenKind::kOverlong);
  if (is_raw_ && raw_text(token)) return true;
  if (input_.window().front() != '<') return text(token);
  has(kLongestOpener);
  const std::string_view window = input_.window();
  const char second = window.size() > 1 ? window[1] : '\0';
  const char third = window.size() > 2 ? window[2] : '\0';
  const bool is_end_tag = second == '/';
  if (is_letter(is_end_tag ? third : second)) {
    attributes_.clear();
    state_ = TagState::kName;
    at_ = name_ = is_end_tag ? 2 : 1;
    return tag(token, is_end_tag ? TokenKind::kEndTag : TokenKind::kStartTag);
  }
  if (const std::size_t size = condition_size()) return give(token, TokenKind::kComment, size);
  if (const Enclosed* const row = find_enclosed(input_.window()))
    return enclosed(token, row->kind, row->closer, row->inside);
  if (is_end_tag && third != '\0') return enclosed(token, TokenKind::kComment, ">", 2);
  return text(token);
}

// The comment "<!--[if lt IE 9]>" ends after its condition, since what follows is page text for some browsers. Returns
// 0 for any other comment, also for the conditions of word processors, which are followed by data.
std::size_t TokenScanner::condition_size() {
  constexpr std::size_t kLongestCondition = 128;
  constexpr std::string_view kOpener = "<!--[if";
  const auto begins = [&] {
    const std::string_view window = input_.window();
    return begins_with_ignoring_case(window.data(), window.data() + window.size(), kOpener);
  };
  if (!begins()) return 0;
  has(kLongestCondition);
  const std::string_view near = input_.window().substr(0, kLongestCondition);
  const std::size_t end = near.find("]>");
  if (end == std::string_view::npos || near.find("-->") < end) return 0;
  const std::string_view condition = near.substr(0, end);
  if (condition.find("IE") == std::string_view::npos && condition.find("ie") == std::string_view::npos) return 0;
  return end + 2;
}

// A placeholder for a tag that stands in a text, because the page's tags are broken, is one token with its name and its
// quotes: a translation must not change them.
bool TokenScanner::text(PageToken& token) {
  using namespace placeholder;
  for (;;) {
    const std::size_t end = find(input_.window(), 1, "<");
    if (end == input_.window().size()) {
      // What may belong to a placeholder is left for the next token, so that no text must be held.
      const std::size_t left = possible_wrapping(input_.window());
      if (left == end && input_.more()) continue;
      return give(token, TokenKind::kText, left == end ? end : end - left);
    }
    if (input_.window()[end - 1] == '"') has(end + kLongestPlaceholder);
    const std::string_view window = input_.window();
    const std::size_t wrapping = wrapping_length(window.substr(0, end), window.substr(end));
    if (wrapping != end) return give(token, TokenKind::kText, end - wrapping);
    return give(token, TokenKind::kServerCode, window.find(kQuotedEnd, end) + kQuotedEnd.size());
  }
}

// False at the end of the raw text.
bool TokenScanner::raw_text(PageToken& token) {
  if (input_.window().front() == '<') {
    if (at_raw_end()) {
      is_raw_ = false;
      return false;
    }
    if (raw_has_references_) {
      has(kLongestOpener);
      const Enclosed* const row = find_enclosed(input_.window());
      if (row && row->kind == TokenKind::kServerCode) return enclosed(token, row->kind, row->closer, row->inside);
    }
  }
  for (;;) {
    const std::string_view window = input_.window();
    std::size_t end = find(window, 1, "<");
    if (end == window.size()) end -= coding_.incomplete_tail(window);
    if (end == 0 && input_.more()) continue;
    return give(token, raw_has_references_ ? TokenKind::kText : TokenKind::kRawText, end == 0 ? window.size() : end);
  }
}

bool TokenScanner::at_raw_end() {
  if (raw_name_.empty()) return false;
  const std::size_t name_end = raw_name_.size() + 2;
  if (!has(name_end + 1)) return false;
  const std::string_view window = input_.window();
  const char* const name = window.data() + 2;
  const char after = window[name_end];
  return window[1] == '/' && begins_with_ignoring_case(name, window.data() + window.size(), raw_name_) &&
         (is_html_space(after) || after == '/' || after == '>');
}

bool TokenScanner::enclosed(PageToken& token, TokenKind kind, std::string_view closer, std::size_t from) {
  for (;;) {
    const std::string_view window = input_.window();
    const std::size_t end = find(window, from, closer);
    if (end != window.size()) {
      rest_ = Rest::kNone;
      const std::size_t size = end + closer.size();
      return give(token, size > kLongestToken ? TokenKind::kOverlong : kind, size);
    }
    // The last bytes may be the beginning of the closer.
    if (window.size() >= closer.size()) from = std::max(from, window.size() - (closer.size() - 1));
    if (from > kLongestToken) {
      rest_ = Rest::kEnclosed;
      closer_ = closer;
      return give(token, TokenKind::kOverlong, from);
    }
    if (!input_.more()) {
      rest_ = Rest::kNone;
      return give(token, TokenKind::kOverlong, window.size());
    }
  }
}

// Inside a tag only certain server code counts. The placeholder of a script in quotes needs no special treatment.
bool TokenScanner::at_server_code_in_tag() {
  has(at_ + kLongestOpener);
  const Enclosed* const row = find_enclosed(input_.window().substr(at_));
  if (!row || row->kind != TokenKind::kServerCode) return false;
  closer_ = row->closer;
  at_ += row->inside;
  return true;
}

// Called at a quote in an unquoted value. Skips the placeholder of a script that protection wrote directly after the
// value. Its ">" does not end the tag.
bool TokenScanner::skip_wrapped_placeholder() {
  using namespace placeholder;
  has(at_ + kLongestPlaceholder);
  const std::size_t length = quoted_length(input_.window().substr(at_));
  at_ += length;
  return length != 0;
}

// Reads more bytes when all bytes of the tag so far have been looked at. When the tag is too long to be held, or the
// page ends in it, makes a token of a piece of the tag and returns true.
bool TokenScanner::tag_stops(PageToken& token) {
  if (at_ > kLongestToken || (rest_ == Rest::kTag && at_ != 0)) {
    rest_ = Rest::kTag;
    // The last attribute may continue, and its quote decides where it ends.
    if (attributes_.size() > 1) attributes_.erase(attributes_.begin(), attributes_.end() - 1);
    return give(token, TokenKind::kOverlong, std::exchange(at_, 0));
  }
  if (input_.more()) return false;
  rest_ = Rest::kNone;
  return give(token, TokenKind::kOverlong, input_.window().size());
}

bool TokenScanner::tag(PageToken& token, TokenKind kind) {
  for (;;) {
    if (at_ == input_.window().size()) {
      if (tag_stops(token)) return true;
      continue;
    }
    const char c = input_.window()[at_];
    if (state_ == TagState::kServerCode) {
      if (!leave_server_code() && tag_stops(token)) return true;
    } else if (c == '>' && state_ == TagState::kBeforeName) {
      return tag_end(token, kind);
    } else if (c != '<' || !enter_server_code()) {
      step(c);
    }
  }
}

bool TokenScanner::tag_end(PageToken& token, TokenKind kind) {
  const std::size_t size = at_ + 1;
  const bool is_overlong = rest_ == Rest::kTag || size > kLongestToken;
  rest_ = Rest::kNone;
  token.name = is_overlong ? std::string_view() : input_.window().substr(name_, name_end_ - name_);
  return give(token, is_overlong ? TokenKind::kOverlong : kind, size);
}

// Called at a "<". Enters the server code that begins there, if any. It may be a name or a value, or part of one.
bool TokenScanner::enter_server_code() {
  const std::size_t begin = at_;
  if (state_ == TagState::kName || !at_server_code_in_tag()) return false;
  if (state_ == TagState::kBeforeName || state_ == TagState::kAfterName) {
    attributes_.emplace_back().name = begin;
    state_ = TagState::kAttributeName;
  } else if (state_ == TagState::kBeforeValue) {
    attributes_.back().value = begin;
    state_ = TagState::kUnquoted;
  }
  outer_state_ = state_;
  state_ = TagState::kServerCode;
  return true;
}

// False when the code continues beyond the window.
bool TokenScanner::leave_server_code() {
  const std::string_view window = input_.window();
  const std::size_t end = find(window, at_, closer_);
  if (end != window.size()) {
    at_ = end + closer_.size();
    state_ = outer_state_;
    return true;
  }
  // The last bytes may be the beginning of the closer.
  if (window.size() >= closer_.size()) at_ = std::max(at_, window.size() - (closer_.size() - 1));
  return false;
}

// Takes the character at at_, or leaves it to another state.
void TokenScanner::step(char c) {
  const bool ends_word = is_html_space(c) || c == '>' || c == '/';
  switch (state_) {
    case TagState::kName:
      if (!ends_word) break;
      name_end_ = at_;
      state_ = TagState::kBeforeName;
      return;
    case TagState::kBeforeName:
      if (ends_word) break;
      attributes_.emplace_back().name = at_;
      state_ = TagState::kAttributeName;
      break;
    case TagState::kAttributeName:
      if (!ends_word && c != '=') break;
      attributes_.back().name_end = at_;
      state_ = TagState::kAfterName;
      return;
    case TagState::kAfterName:
      if (c == '=') {
        state_ = TagState::kBeforeValue;
      } else if (!is_html_space(c)) {
        state_ = TagState::kBeforeName;
        return;
      }
      break;
    case TagState::kBeforeValue:
      if (is_html_space(c)) break;
      if (c == '>') {
        state_ = TagState::kBeforeName;
        return;
      }
      if (c == '"' || c == '\'') attributes_.back().quote = c;
      attributes_.back().value = attributes_.back().quote != 0 ? at_ + 1 : at_;
      state_ = attributes_.back().quote != 0 ? TagState::kQuoted : TagState::kUnquoted;
      break;
    case TagState::kQuoted:
      return quoted(c);
    case TagState::kUnquoted:
      if (is_html_space(c) || c == '>') {
        attributes_.back().value_end = at_;
        state_ = TagState::kBeforeName;
        return;
      }
      if (c == '"' && skip_wrapped_placeholder()) return;
      break;
    case TagState::kServerCode:
      return;
  }
  ++at_;
}

void TokenScanner::quoted(char c) {
  AttributeSpan& attribute = attributes_.back();
  if (c == attribute.quote) {
    attribute.value_end = at_++;
    state_ = TagState::kBeforeName;
    return;
  }
  const std::string_view window = input_.window();
  const char* const end = window.data() + window.size();
  const char* const from = window.data() + at_ + 1;
  const char* const found = attribute.quote == '"' ? find_any<'"', '<'>(from, end) : find_any<'\'', '<'>(from, end);
  at_ = static_cast<std::size_t>(found - window.data());
}

}  // namespace kavo::html
