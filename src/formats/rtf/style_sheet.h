// The styles of an RTF document: their names, and which of them are left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/rtf/token_scanner.h"
#include "formats/text/text_coding.h"

namespace kavo::rtf {

// Style numbers have 15 bits. No word processor writes a higher one; a style with such a number is ignored.
inline constexpr std::int32_t kHighestStyle = 32'767;

class StyleSheet {
 public:
  // `excluded` are names in UTF-8, in any case of ASCII letters. A style that has several names, with commas between,
  // is excluded by each of them.
  explicit StyleSheet(std::vector<std::string> excluded);

  // Takes the tokens of a style sheet in order, without the braces around it. `coding` is the coding of the document,
  // null when it is unknown.
  void take(const Token& token, const TextCoding* coding);

  // The first name of a style of paragraphs, UTF-8; "" for one that is not known.
  std::string_view paragraph_style(std::int32_t number) const;
  bool excludes_paragraphs(std::int32_t number) const { return excluded_paragraphs_.contains(number); }
  bool excludes_characters(std::int32_t number) const { return excluded_characters_.contains(number); }

 private:
  void finish(const TextCoding* coding);

  std::vector<std::string> excluded_;
  std::unordered_map<std::int32_t, std::string> paragraph_styles_;
  std::set<std::int32_t> excluded_paragraphs_;
  std::set<std::int32_t> excluded_characters_;
  std::size_t depth_ = 0;
  std::int32_t number_ = 0;  // of the style being read
  bool is_of_characters_ = false;
  bool is_other_ = false;  // of tables, of sections
  std::string name_;       // as the document writes it
};

}  // namespace kavo::rtf
