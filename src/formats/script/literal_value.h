// Reads the text that a literal means, and writes a text as a literal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "formats/script/token.h"
#include "formats/text/text_coding.h"

namespace kavo::script {

// How a text is quoted: the language, the quotes, and what the literal must not contain.
struct Quoting {
  Language language = Language::kUnknown;
  LiteralForm form = LiteralForm::kDouble;
  // The literal is in a <script> element, where an end tag ends the script even inside quotes.
  bool in_element = false;
  // The language takes no expression at this place, so the literal must not be interrupted.
  bool is_constant = false;
};

// Reads what is between the quotes, character by character.
class LiteralReader {
 public:
  struct Character {
    std::string_view utf8;  // valid until the next call; "" for a line end that an escape hides
    std::size_t begin = 0;  // the bytes of the literal's text that write it
    std::size_t end = 0;
    bool is_text = true;  // false for bytes that are not a character of the coding
  };

  // `text` is in the bytes of `coding`, which must outlive the reader.
  LiteralReader(std::string_view text, const Quoting& quoting, const TextCoding& coding)
      : text_(text), quoting_(quoting), coding_(coding) {}
  bool next(Character& character);

 private:
  bool escape(Character& character);
  bool number(std::size_t begin, std::size_t least, std::size_t most, unsigned base, char32_t& value,
              std::size_t& end) const;
  bool unicode(std::size_t begin, Character& character);
  bool octal(std::size_t begin, Character& character);
  void take(char32_t value, std::size_t end, Character& character);
  char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }

  std::string_view text_;
  Quoting quoting_;
  const TextCoding& coding_;
  std::size_t at_ = 0;
  std::string buffer_;
};

// Appends `utf8` as it must be written between the quotes, in the bytes of `coding`. Whatever would end the literal,
// its script or its line is escaped. Where the language has no escape, the literal is interrupted ("" & vbCrLf & "").
// Throws `failure` 5 for a text that cannot be written there at all.
void append_literal_text(std::string_view utf8, const Quoting& quoting, const TextCoding& coding, std::string& bytes);

// The operator that joins two texts in the language, with a blank on each side.
std::string_view text_operator_of(Language language);
// The quote that opens and closes a literal; "" for a form whose delimiters are longer.
std::string_view quote_of(LiteralForm form);

}  // namespace kavo::script
