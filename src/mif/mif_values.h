// The values between ` and ' in a MIF statement, and the pieces of an index text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "common/byte_scan.h"

namespace kavo {

// The place of a value in its statement, without the quotes.
struct QuotedValue {
  std::size_t begin;
  std::size_t end;
  std::string_view of(std::string_view statement) const { return statement.substr(begin, end - begin); }
};

// The value after the first `label` (which ends with the backquote) from `from` on, up to the next "'". Nothing when
// the label or the closing quote is missing. A search by bytes is safe: neither "<" nor "'" is ever the second byte of
// a character.
inline std::optional<QuotedValue> find_value(std::string_view statement, std::string_view label, std::size_t from = 0) {
  const char* const end = statement.data() + statement.size();
  const char* const found = find_text(statement.data() + from, end, label);
  if (found == end) return std::nullopt;
  const char* const value = found + label.size();
  const char* const quote = find_any<'\''>(value, end);
  if (quote == end) return std::nullopt;
  return QuotedValue{static_cast<std::size_t>(value - statement.data()),
                     static_cast<std::size_t>(quote - statement.data())};
}

// The name of a paragraph number format: the paragraph tag, or the format itself when there is no quoted tag.
inline std::string_view number_format_tag(std::string_view statement, const QuotedValue& format) {
  const auto tag = find_value(statement, "<PgfTag `");
  return tag && tag->begin != tag->end ? tag->of(statement) : format.of(statement);
}

// Calls visit(name, text) for each value after `name_label`, with the value after the next `text_label`.
template <class Visit>
void for_each_pair(std::string_view statement, std::string_view name_label, std::string_view text_label, Visit visit) {
  std::size_t from = 0;
  while (const auto name = find_value(statement, name_label, from)) {
    const auto text = find_value(statement, text_label, name->end);
    if (!text) return;
    visit(*name, *text);
    from = text->end;
  }
}

inline bool is_blank(std::string_view value) { return value.find_first_not_of(' ') == std::string_view::npos; }

// Calls visit(piece, separator) for each piece of an index text. Option 1 splits at ";", 2 at ";" and ":"; any smaller
// one does not split, any larger one counts as 1. `separator` is the one that ended the piece, empty for the last
// piece. An empty piece between separators counts, an empty last one does not. Pieces keep their blanks.
template <class Visit>
void for_each_index_piece(std::string_view value, std::int16_t split_options, Visit visit) {
  constexpr std::int16_t both = 2;
  std::size_t begin = 0;
  if (split_options > 0) {
    const std::string_view separators = split_options == both ? ";:" : ";";
    for (std::size_t at; (at = value.find_first_of(separators, begin)) != std::string_view::npos; begin = at + 1)
      visit(value.substr(begin, at - begin), value.substr(at, 1));
  }
  if (begin != value.size()) visit(value.substr(begin), std::string_view());
}

}  // namespace kavo
