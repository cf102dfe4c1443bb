// Markup in a joined text: its tags are codes, the tags of blocks end a text, and attributes that people read are texts
// of their own.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "suite/filters/script/joined_text.h"

namespace kavo::script {

// A tag, a comment or an operand in a text. Places in JoinedText::text.
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
  bool has_markup = false;  // references and tags count as in a page
  bool in_markup = false;   // stands between tags or in one
  std::string_view attribute;
  char quote = 0;  // around the attribute's value
  std::vector<TextCode> codes;
};

// In order. `is_page`: the text goes into a page, so that a tag may begin or end in another literal.
std::vector<ReadText> read_texts(const JoinedText& joined, bool is_page);

// The marks of operands that stand in a tag, but for those in an attribute that people read, as places in
// JoinedText::text: "<tr class='" & IIf(a, "odd", "even") & "'>".
std::vector<std::size_t> operands_in_tags(const JoinedText& joined);

}  // namespace kavo::script
