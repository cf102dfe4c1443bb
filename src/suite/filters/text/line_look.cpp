#include "suite/filters/text/line_look.h"

#include <algorithm>

#include "formats/text/columns.h"
#include "formats/text/text_coding.h"
#include "suite/filters/text/line_joint.h"

namespace kavo {
namespace {

// Lines of prose are this wide. Shorter ones are addresses, verses and lists, longer ones are whole paragraphs.
constexpr std::size_t kNarrowest = 40;
constexpr std::size_t kWidest = 160;

// People who fill lines by hand leave some a little short.
constexpr std::size_t kSlack = 4;

// The first line of a paragraph is indented by at most this much, and the other lines are near the margin. Neither
// holds for centred titles.
constexpr std::size_t kDeepestFirstLine = 8;

// Prose has neither so many blanks between words nor so many equal signs in a row.
constexpr std::size_t kColumnGap = 3;
constexpr std::size_t kRule = 4;

bool is_blank(char c) { return c == ' ' || c == '\t'; }

bool is_sign(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte > ' ' && byte < 0x7F && !(c >= '0' && c <= '9') && !(c >= 'A' && c <= 'Z') && !(c >= 'a' && c <= 'z');
}

bool is_fixed_text(std::string_view text) {
  constexpr std::string_view kBoxDrawings[] = {"\xE2\x94", "\xE2\x95"};  // U+2500 to U+257F, without the last byte
  if (text.find_first_of("\t{}") != text.npos) return true;
  if (std::ranges::count(text, '|') > 1) return true;
  for (const std::string_view begin : kBoxDrawings)
    if (text.find(begin) != text.npos) return true;
  if (std::ranges::all_of(text, [](char c) { return is_sign(c) || is_blank(c); })) return true;
  std::size_t run = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    run = i != 0 && text[i] == text[i - 1] ? run + 1 : 1;
    if ((text[i] == ' ' && run >= kColumnGap) || (is_sign(text[i]) && run >= kRule)) return true;
  }
  return false;
}

}  // namespace

LineLook look_of(std::string_view indentation, std::string_view text) {
  LineLook look;
  look.indentation = columns_of(indentation);
  look.bullet = bullet_length(text);
  look.is_fixed = is_fixed_text(text);
  look.width = look.indentation + columns_of(text, look.indentation);
  bool is_first_word = true;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(rest), 1);
    const char32_t character =
        length == 1 ? static_cast<unsigned char>(rest.front()) : utf8_code_point(rest.substr(0, length));
    rest.remove_prefix(length);
    if (look.first == 0) look.first = character;
    look.before_last = look.last;
    look.last = character;
    if (character == U' ' || (look.before_last != 0 && is_unspaced(character))) {
      is_first_word = false;
      look.has_words = true;
    }
    if (is_first_word) look.first_word += columns_of(character);
  }
  return look;
}

bool ParagraphLines::goes_on_with(const LineLook& line) const {
  if (lines_.empty() || lines_.back().is_fixed || line.is_fixed || line.bullet != 0) return false;
  if (lines_.size() > 1) return line.indentation == lines_[1].indentation;
  const LineLook& first = lines_.front();
  if (first.bullet != 0) return line.indentation >= first.indentation;
  if (line.indentation >= first.indentation) return line.indentation == first.indentation;
  return first.indentation - line.indentation <= kDeepestFirstLine && line.indentation <= kDeepestFirstLine;
}

std::size_t ParagraphLines::width() const {
  std::size_t width = 0;
  for (const LineLook& line : lines_) width = std::max(width, line.width);
  return width;
}

// True when a line that another one follows is full.
bool ParagraphLines::is_filled_line(std::size_t i, std::size_t widest) const {
  const LineLook& line = lines_[i];
  const LineLook& next = lines_[i + 1];
  const bool joins = joins_without_blank(line.before_last, line.last, next.first);
  return line.has_words && line.width + (joins ? 0 : 1) + next.first_word + kSlack > widest;
}

bool ParagraphLines::is_filled() const {
  const std::size_t widest = width();
  if (lines_.size() < 2 || widest < kNarrowest || widest > kWidest) return false;
  std::size_t filled = 0;
  for (std::size_t i = 0; i + 1 < lines_.size(); ++i) filled += is_filled_line(i, widest) ? 1 : 0;
  return 2 * filled >= lines_.size() - 1;
}

ParagraphLines::Ends ParagraphLines::telling_ends() const {
  const std::size_t widest = width();
  Ends ends;
  if (widest < kNarrowest) return ends;
  for (std::size_t i = 0; i + 1 < lines_.size(); ++i) {
    if (lines_[i].width == widest) continue;
    ++ends.count;
    if (widest <= kWidest && is_filled_line(i, widest)) ++ends.filled;
  }
  return ends;
}

}  // namespace kavo
