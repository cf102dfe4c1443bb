// Judges what a line of a text file looks like, and which lines are one paragraph.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kavo {

// Widths are in columns.
struct LineLook {
  std::size_t indentation = 0;
  std::size_t width = 0;       // to the end of its text
  std::size_t first_word = 0;  // the width that the line before would need to hold this line's first word
  std::size_t bullet = 0;      // bytes of UTF-8
  bool is_fixed = false;       // a row of a table, a rule, a drawing, code: a line of its own
  bool has_words = false;      // more than one word, or writing without blanks between words
  char32_t first = 0;          // its text's first character and its last two
  char32_t before_last = 0;
  char32_t last = 0;
};

// `indentation` holds the blanks at the start. `text` (UTF-8, not empty) is the rest without the blanks at the end.
LineLook look_of(std::string_view indentation, std::string_view text);

// Lines that may be one paragraph, by their order, indentation and bullets.
class ParagraphLines {
 public:
  void clear() { lines_.clear(); }
  void add(const LineLook& line) { lines_.push_back(line); }
  // True when a line that directly follows these belongs to their paragraph. A fixed line never does.
  bool goes_on_with(const LineLook& line) const;

  std::size_t size() const { return lines_.size(); }
  const LineLook& operator[](std::size_t i) const { return lines_[i]; }
  std::size_t width() const;  // of the longest line

  // True when the lines are as wide as prose, and at least half of them end because the next word would have made them
  // longer than the longest line.
  bool is_filled() const;

  // Counts of line ends. The end of the longest line does not count: no word would have fitted there.
  struct Ends {
    std::size_t count = 0;
    std::size_t filled = 0;
  };
  Ends telling_ends() const;

 private:
  bool is_filled_line(std::size_t i, std::size_t widest) const;

  std::vector<LineLook> lines_;
};

}  // namespace kavo
