// Finds what a text of any format contains besides words: placeholders for values, addresses, numbers. A filter turns
// placeholders and addresses into codes, and locks a text that has no words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// A part of a text that a translation must keep.
struct PatternMatch {
  std::size_t begin = 0;  // in bytes
  std::size_t size = 0;   // 0 for none
  std::string_view type;  // XLIFF ctype: "x-placeholder", "x-address"; a literal
};

class TextPatterns {
 public:
  TextPatterns() : TextPatterns(std::vector<std::string>()) {}
  // `own` are patterns that the user adds, in which "*" stands for one or more characters of a line. A pattern that
  // begins with "*" is ignored, because it could begin anywhere.
  explicit TextPatterns(std::vector<std::string> own);

  // The first one from `from` on: "{{name}}", "{0}", "{name}", "${name}", "%s", "%1$d", "a@b.org", "https://b.org",
  // "www.b.org". `text` is ASCII-compatible; its patterns are ASCII. Calls with growing `from` take linear time.
  PatternMatch find(std::string_view text, std::size_t from) const;

 private:
  PatternMatch at(std::string_view text, std::size_t place, std::size_t from) const;
  std::size_t own_length(std::string_view text) const;

  std::vector<std::string> own_;
  bool begins_[256] = {};
};

// True when a text contains a letter. Without one it consists of numbers, signs and blanks. `text` is in UTF-8.
bool has_letter(std::string_view text);

// What a locked text's note says.
inline constexpr std::string_view kNothingToTranslate = "Nothing to translate: only codes, numbers or signs";

}  // namespace kavo
