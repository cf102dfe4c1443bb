// The styles of an RTF document by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "formats/rtf/token_scanner.h"
#include "formats/text/text_coding.h"

namespace kavo::rtf {

// Finds the numbers of the styles with certain names. The case of ASCII letters does not matter. A style with several
// names, separated by commas, is found by each of them.
class StylesNamed {
 public:
  // `names` are in UTF-8.
  explicit StylesNamed(std::vector<std::string> names);
  // True when any names were given.
  bool is_wanted() const { return !names_.empty(); }

  // Takes the tokens of a style sheet in order, without the braces around it. `coding` is the coding of the document,
  // null when it is unknown.
  void take(const Token& token, const TextCoding* coding);

  bool has_paragraph_style(std::int32_t number) const { return paragraph_styles_.contains(number); }
  bool has_character_style(std::int32_t number) const { return character_styles_.contains(number); }

 private:
  void finish(const TextCoding* coding);

  std::vector<std::string> names_;
  std::set<std::int32_t> paragraph_styles_;
  std::set<std::int32_t> character_styles_;
  std::size_t depth_ = 0;
  std::int32_t number_ = 0;  // of the style being read
  bool is_of_characters_ = false;
  bool is_other_ = false;  // of tables, of sections
  std::string name_;       // as the document writes it
};

}  // namespace kavo::rtf
