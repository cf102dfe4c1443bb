// Reads the markup in a joined text. Inline tags are codes, block tags end a text, and attributes that people read are
// texts of their own.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "suite/filters/script/joined_text.h"

namespace kavo::script {

// A tag, a comment or an operand in a text. Its places are offsets in JoinedText::text.
struct TextCode {
  std::size_t begin = 0;
  std::size_t end = 0;
  char kind = 's';           // 'o' opens, 'c' closes, 's' stands alone
  std::string_view type;     // of a tag: what XLIFF calls it
  std::string_view element;  // its name, as written
};

struct ReadText {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool has_markup = false;  // references and tags have the meaning that they have in a page
  bool in_markup = false;   // it is between tags, or in one
  std::string_view attribute;
  char quote = 0;  // around the attribute's value
  std::vector<TextCode> codes;
};

// The texts in order. `is_page` says that the text goes into a page, so a tag may begin or end in another literal.
std::vector<ReadText> read_texts(const JoinedText& joined, bool is_page);

// Where the marks of operands inside tags are in JoinedText::text, except those in attributes that people read: "<tr
// class='" & IIf(a, "odd", "even") & "'>".
std::vector<std::size_t> operands_in_tags(const JoinedText& joined);

}  // namespace kavo::script
