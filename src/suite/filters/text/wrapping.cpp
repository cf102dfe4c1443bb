#include "suite/filters/text/wrapping.h"

#include <algorithm>
#include <charconv>

#include "formats/text/columns.h"
#include "formats/text/text_coding.h"
#include "suite/document/coded_text.h"
#include "suite/filters/text/line_joint.h"

namespace kavo {
namespace {

constexpr char kMark = 'w';

// A code counts as a letter: an invalid byte or a control character.
constexpr char32_t kCode = U'x';

class Wrapping {
 public:
  explicit Wrapping(const ParagraphShape& shape)
      : shape_(shape),
        column_(shape.column),
        indentation_(columns_of(
            shape.separator.substr(std::min(shape.separator.find_first_of(" \t"), shape.separator.size())))) {}

  void character(std::string_view bytes, char32_t code_point) {
    if (code_point == U'\n' || code_point == U'\r') code_point = U' ';
    if (code_point == U' ') {
      end_word();
      blanks_ += ' ';
      last_ = U' ';
      return;
    }
    const bool may_break = blanks_.empty() && !word_.empty() && joins_without_blank(before_last_, last_, code_point) &&
                           !is_closing(code_point) && !is_opening(last_);
    if (may_break) end_word();
    if (word_.empty()) after_ = code_point;
    word_ += bytes;
    width_ += columns_of(code_point);
    before_last_ = last_;
    last_ = code_point;
  }

  std::string finish() {
    end_word();
    return std::move(result_ += blanks_);
  }

 private:
  // Puts the word into the line, or into one of its own.
  void end_word() {
    if (word_.empty()) return;
    const bool begins_line = result_.empty();
    // Joining the lines must restore what was at a break: one blank, or nothing where lines join without one.
    const bool joins = joins_without_blank(line_before_last_, line_last_, after_);
    const bool may_break =
        !begins_line && (blanks_.empty() ? joins : blanks_.size() == 1 && !joins) && bullet_length(word_ + ' ') == 0;
    if (may_break && column_ + blanks_.size() + width_ > shape_.width && column_ > indentation_) {
      result_ += shape_.separator;
      column_ = indentation_;
    } else {
      result_ += blanks_;
      column_ += blanks_.size();
    }
    result_ += word_;
    column_ += width_;
    line_before_last_ = before_last_;
    line_last_ = last_;
    word_.clear();
    blanks_.clear();
    width_ = 0;
  }

  const ParagraphShape& shape_;
  std::size_t column_;
  std::size_t indentation_;
  std::string result_;
  std::string blanks_;  // blanks before the word
  std::string word_;
  std::size_t width_ = 0;
  char32_t after_ = 0;  // the word's first character
  char32_t before_last_ = 0;
  char32_t last_ = 0;
  char32_t line_before_last_ = 0;  // of what is in the line
  char32_t line_last_ = 0;
};

}  // namespace

std::string to_context(const ParagraphShape& shape) {
  return kMark + std::to_string(shape.width) + ',' + std::to_string(shape.column) + ',' + std::string(shape.separator);
}

bool to_shape(std::string_view context, ParagraphShape& shape) {
  if (context.empty() || context.front() != kMark) return false;
  const char* const end = context.data() + context.size();
  const auto width = std::from_chars(context.data() + 1, end, shape.width);
  if (width.ptr == end || *width.ptr != ',') return false;
  const auto column = std::from_chars(width.ptr + 1, end, shape.column);
  if (column.ptr == end || *column.ptr != ',') return false;
  shape.separator = std::string_view(column.ptr + 1, static_cast<std::size_t>(end - column.ptr - 1));
  return true;
}

std::string wrapped(std::string_view coded, const ParagraphShape& shape) {
  Wrapping wrapping(shape);
  CodedTextReader reader(coded);
  std::string reference;
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      reference.clear();
      append_code(reference, part.kind, part.text);
      wrapping.character(reference, kCode);
      continue;
    }
    for (std::string_view rest = part.text; !rest.empty();) {
      const std::size_t length = std::max<std::size_t>(utf8_character_length(rest), 1);
      const std::string_view character = rest.substr(0, length);
      wrapping.character(character,
                         length == 1 ? static_cast<unsigned char>(rest.front()) : utf8_code_point(character));
      rest.remove_prefix(length);
    }
  }
  return wrapping.finish();
}

}  // namespace kavo
