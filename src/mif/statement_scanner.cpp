#include "mif/statement_scanner.h"

#include <algorithm>
#include <cstring>

#include "common/byte_scan.h"

namespace kavo {
namespace {

constexpr std::size_t kShortestOpening = 4;
constexpr std::size_t kLongestOpening = 32;

// Any control character ends a comment, usually a line end or a tab.
const char* comment_end(const char* p, const char* end) noexcept {
  return std::find_if(p, end, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

}  // namespace

StatementScanner::StatementScanner(std::u16string_view path, const StatementKeywords& keywords, ProgressEvent* progress)
    : reader_(path), keywords_(keywords), progress_(progress) {
  while (reader_.window().size() < MifCoding::kHeaderSize && ReadChunk()) {
  }
  coding_ = MifCoding::of(reader_.window());
}

bool StatementScanner::ReadNextStatement() {
  reader_.consume(statement_size_);
  statement_size_ = 0;
  while (find_opening())
    if (find_end()) return true;
  return false;
}

bool StatementScanner::ReadChunk() {
  const bool more = reader_.more();
  if (more && progress_ != nullptr) progress_->report(reader_.percent());
  return more;
}

// Moves the window to the next opening. False when the file holds no more.
bool StatementScanner::find_opening() {
  for (;;) {
    const std::string_view window = reader_.window();
    const char* const end = window.data() + window.size();
    const char* p = window.data();
    for (;; ++p) {
      p = keywords_.candidate(p, end);
      if (p == end || static_cast<std::size_t>(end - p) < kLongestOpening) break;
      if (is_opening({p, end})) {
        pass_on(static_cast<std::size_t>(p - window.data()));
        return true;
      }
    }
    if (reader_.exhausted()) {
      for (; p != end; p = keywords_.candidate(p + 1, end)) {
        if (!is_opening({p, end})) continue;
        pass_on(static_cast<std::size_t>(p - window.data()));
        return true;
      }
      pass_on(window.size());
      return false;
    }
    // The last bytes may be the beginning of an opening, so they stay before the next block.
    const std::size_t kept = std::min(window.size(), kLongestOpening - 1);
    pass_on(std::min(static_cast<std::size_t>(p - window.data()), window.size() - kept));
    ReadChunk();
  }
}

bool StatementScanner::is_opening(std::string_view text) {
  for (opening_ = 0; opening_ < keywords_.openings.size(); ++opening_) {
    const std::string_view opening = keywords_.openings[opening_];
    // Comparing four bytes needs no call, and most candidates differ in them.
    if (text.size() >= opening.size() && std::memcmp(text.data(), opening.data(), kShortestOpening) == 0 &&
        text.starts_with(opening))
      return true;
  }
  return false;
}

// Finds the end of the statement at the front of the window. When the statement cannot be delivered, passes it on and
// returns false.
bool StatementScanner::find_end() {
  const std::uint64_t start = reader_.position();
  state_ = outside_ = State::kOpening;
  depth_ = 1;
  bool closed = false;
  std::size_t at = 1;  // bytes of the window that belong to the statement
  for (;;) {
    at = skip(reader_.window(), at);
    closed = depth_ == 0;
    if (closed) break;
    if (at > kLongestStatement) {
      // The cut is between characters, so that the next window begins with a whole one.
      const std::size_t whole = at - coding_.incomplete_tail(reader_.window());
      pass_on(whole);
      at -= whole;
    }
    if (!ReadChunk()) break;
  }
  if (closed && reader_.position() + at - start <= kLongestStatement) {
    statement_size_ = at;
    return true;
  }
  pass_on(at);
  if (passed_.count++ == 0) {
    passed_.first = start;
    passed_.first_is_closed = closed;
  }
  return false;
}

// Continues from window[at]. Returns the place after the end of the statement, or the end of the window.
std::size_t StatementScanner::skip(std::string_view window, std::size_t at) {
  const char* const begin = window.data();
  const char* const end = begin + window.size();
  const char* p = begin + at;
  while (p != end && depth_ != 0) {
    switch (state_) {
      case State::kString:
        p = find_any<'\''>(p, end);
        if (p == end) break;
        ++p;
        state_ = outside_;
        break;
      case State::kComment:
        p = comment_end(p, end);
        if (p != end) state_ = State::kBetween;
        break;
      case State::kOpening:
      case State::kBetween:
        p = state_ == State::kOpening ? find_any<'<', '>', '`'>(p, end) : find_any<'<', '>', '`', '#'>(p, end);
        if (p == end) break;
        switch (*p) {
          case '<':
            ++depth_;
            state_ = State::kOpening;
            break;
          case '>':
            --depth_;
            state_ = State::kBetween;
            break;
          case '#':
            state_ = State::kComment;
            break;
          default:  // a backquote
            if (coding_.is_trail_byte(begin, p)) break;
            outside_ = state_;
            state_ = State::kString;
        }
        ++p;
        break;
    }
  }
  return static_cast<std::size_t>(p - begin);
}

void StatementScanner::pass_on(std::size_t count) {
  WriteThrough(reader_.window().substr(0, count));
  reader_.consume(count);
}

}  // namespace kavo
