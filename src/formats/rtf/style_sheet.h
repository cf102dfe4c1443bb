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

// The numbers of the styles that have one of some names, in any case of ASCII letters. A style that has several names,
// with commas between, is found by each of them.
class StylesNamed {
 public:
  // `names` in UTF-8.
  explicit StylesNamed(std::vector<std::string> names);
  // Whether any names were given.
  bool is_wanted() const { return !names_.empty(); }

  // The tokens of a style sheet in order, without the braces around it; `coding` is that of the document, null when it
  // is not known.
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
