// What a text of any format holds beside words: places for values, addresses, numbers. A filter makes codes of the
// former two, and locks a text that has no words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// A run of a text that a translation keeps as it is.
struct PatternMatch {
  std::size_t begin = 0;  // in bytes
  std::size_t size = 0;   // 0 for none
  std::string_view type;  // XLIFF ctype: "x-placeholder", "x-address"; a literal
};

class TextPatterns {
 public:
  TextPatterns() : TextPatterns(std::vector<std::string>()) {}
  // With patterns that a user adds: a "*" stands for one or more characters of a line. One that begins with "*" is
  // left out: it would begin anywhere.
  explicit TextPatterns(std::vector<std::string> own);

  // The first one at or behind `from`: "{{name}}", "{0}", "{name}", "${name}", "%s", "%1$d", "a@b.org",
  // "https://b.org", "www.b.org". `text` is ASCII-compatible; its patterns are ASCII. Calls with growing `from` take
  // linear time.
  PatternMatch find(std::string_view text, std::size_t from) const;

 private:
  PatternMatch at(std::string_view text, std::size_t place, std::size_t from) const;
  std::size_t own_length(std::string_view text) const;

  std::vector<std::string> own_;
  bool begins_[256] = {};
};

// Whether a text holds a letter: what has none is a number, a sign or a blank. `text` in UTF-8.
bool has_letter(std::string_view text);

// What a locked text's note says.
inline constexpr std::string_view kNothingToTranslate = "Nothing to translate: only codes, numbers or signs";

}  // namespace kavo
