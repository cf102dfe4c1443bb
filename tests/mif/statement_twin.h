// The statement scanner written as plainly as possible: character by character over a buffer that is read in blocks
// of 32,768 bytes. The tests compare the fast one with it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/code_page.h"

namespace kavo::test {

struct TwinResult {
  std::vector<std::string> statements;
  std::string passed;  // everything else, in order
  bool operator==(const TwinResult&) const = default;
};

inline void PrintTo(const TwinResult& result, std::ostream* out) {
  for (const std::string& statement : result.statements) *out << "[" << statement << "]";
  *out << " passed [" << result.passed << "]";
}

class StatementTwin {
 public:
  // `code_page` nullptr: every byte is a character.
  StatementTwin(std::string_view file, std::vector<std::string> keywords, const CodePage* code_page)
      : file_(file), keywords_(std::move(keywords)), code_page_(code_page) {}

  TwinResult run() {
    TwinResult result;
    std::string statement;
    while (read_next_statement(statement, result.passed)) result.statements.push_back(statement);
    return result;
  }

  // The file in its parts, every second one (the first, the third ...) a text between statements.
  std::vector<std::string> parts() {
    std::vector<std::string> parts(1);
    std::string statement;
    while (read_next_statement(statement, parts.back())) {
      parts.push_back(statement);
      parts.emplace_back();
    }
    return parts;
  }

 private:
  static constexpr std::size_t kBlock = 32768;
  static constexpr std::size_t kTail = 31;

  using Character = std::uint16_t;  // a byte, or a first and a second one

  void read_chunk() {
    std::size_t count = std::min(kBlock, file_.size() - position_);
    for (std::size_t i = 0; i < count; ++i) {
      Character character = byte_at(position_ + i);
      if (code_page_ != nullptr && code_page_->is_lead_byte(static_cast<unsigned char>(character))) {
        if (i + 1 == count && position_ + count < file_.size()) ++count;
        // A byte below 0x40 is never the second one: the first is then a character that is not valid.
        if (i + 1 < count && byte_at(position_ + i + 1) >= 0x40)
          character = static_cast<Character>(character << 8 | byte_at(position_ + ++i));
      }
      buffer_.push_back(character);
    }
    position_ += count;
  }

  unsigned char byte_at(std::size_t at) const { return static_cast<unsigned char>(file_[at]); }
  bool at_end() const { return position_ == file_.size(); }

  std::string take(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
      if (buffer_[i] > 0xFF) text += static_cast<char>(buffer_[i] >> 8);
      text += static_cast<char>(buffer_[i]);
    }
    buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(count));
    return text;
  }

  bool keyword_at(std::size_t at) const {
    for (const std::string& keyword : keywords_) {
      if (at + keyword.size() > buffer_.size()) continue;
      bool equal = true;
      for (std::size_t i = 0; equal && i < keyword.size(); ++i)
        equal = buffer_[at + i] == static_cast<unsigned char>(keyword[i]);
      if (equal) return true;
    }
    return false;
  }

  bool read_next_statement(std::string& statement, std::string& passed) {
    for (;;) {
      if (buffer_.empty() && at_end()) return false;
      std::size_t found = 0;
      while (found < buffer_.size() && !keyword_at(found)) ++found;
      if (found == buffer_.size()) {
        if (at_end()) {
          passed += take(buffer_.size());
        } else {
          passed += take(buffer_.size() > kTail ? buffer_.size() - kTail : 0);
          read_chunk();
        }
        continue;
      }
      passed += take(found);
      int depth = 1;
      bool after_opening = true, in_quote = false, in_comment = false;
      std::size_t at = 1;
      for (; depth != 0; ++at) {
        if (at == buffer_.size()) {
          if (at_end()) break;
          read_chunk();
        }
        const Character c = buffer_[at];
        if (c == '<') {
          if (!in_quote && !in_comment) ++depth, after_opening = true;
        } else if (c == '>') {
          if (!in_quote && !in_comment) --depth, after_opening = false;
        } else if (c == '`') {
          if (!in_comment) in_quote = true;
        } else if (c == '\'') {
          in_quote = false;
        } else if (c == '#') {
          if (!after_opening && !in_quote) in_comment = true;
        } else if (c < ' ') {
          in_comment = false;
        }
      }
      std::string text = take(at);
      if (depth != 0) {
        passed += text;
        return false;
      }
      statement = text;
      return true;
    }
  }

  std::string_view file_;
  std::size_t position_ = 0;
  std::vector<std::string> keywords_;
  const CodePage* code_page_;
  std::vector<Character> buffer_;
};

}  // namespace kavo::test
