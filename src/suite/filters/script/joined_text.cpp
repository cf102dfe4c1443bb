#include "suite/filters/script/joined_text.h"

#include "formats/text/text_coding.h"
#include "suite/filters/script/script_rules.h"

namespace kavo::script {

JoinedText joined_text(std::span<const Item> items, std::string_view script, Language language,
                       const TextCoding& coding) {
  JoinedText result;
  const auto append = [&](std::string_view text, std::size_t begin, std::size_t end) {
    result.text += text;
    result.begin.insert(result.begin.end(), text.size(), begin);
    result.end.insert(result.end.end(), text.size(), end);
  };
  constexpr std::string_view kMark(&kOperandMark, 1);
  bool is_open = false;
  for (const Item& item : items) {
    if (!item.is_literal) {
      append(kMark, item.begin, item.end);
      continue;
    }
    is_open = !item.ends;
    const std::size_t from = item.begin + item.open;
    LiteralReader reader(script.substr(from, item.end - item.close - from), {language, item.form, false}, coding);
    for (LiteralReader::Character c; reader.next(c);) {
      if (c.utf8.empty() && c.is_text) continue;  // the escaped line end inside a literal
      // Not every control character can be in a translation.
      const bool is_text = c.is_text && is_xml_character(utf8_code_point(c.utf8));
      append(is_text ? c.utf8 : kMark, from + c.begin, from + c.end);
    }
  }
  result.is_whole = !is_open;
  return result;
}

}  // namespace kavo::script
