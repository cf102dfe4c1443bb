// Cuts scripts into tokens.
//
// A script may come in several pieces, with something of another language between them: a client script with server
// blocks in it, server blocks with page text between them. What a language carries from piece to piece is carried: a
// string, a comment, a template that a block interrupts. Bytes that are no program come out as tokens all the same.
//
// The grammars: VBScript Language Reference; ECMA-262; The Java Language Specification, chapter 3; the PHP manual,
// "Strings" and "Comments".
#pragma once

#include <memory>
#include <string_view>

#include "formats/script/token.h"
#include "formats/text/text_coding.h"

namespace kavo::script {

// What stood between the last piece and this one.
enum class Between : std::uint8_t {
  kValue,  // something that goes into the script where it stands: strings and comments go on behind it
  kPage,   // page text: a server's string cannot go on behind it, a comment can
};

class Lexer {
 public:
  virtual ~Lexer() = default;
  // Begins a piece, which must stay until the next one begins. `text` holds whole characters.
  void begin(std::string_view text, Between between = Between::kPage);
  // The next token; false at the end of the piece.
  bool next(Token& token);
  // True when the piece ended inside a literal, which the next piece may carry on.
  virtual bool inside_literal() const = 0;

 protected:
  // `coding`, that of the script's bytes, may be null; it must outlive the lexer. In a double-byte coding the second
  // byte of a character may look like a backslash.
  explicit Lexer(const TextCoding* coding) : coding_(coding) {}

  // Scans one token from at_ on, which is not at the end, sets its kind and what else it has, and moves at_ behind it.
  virtual void scan(Token& token) = 0;
  // What was learnt of the places in the last piece does not hold in this one.
  virtual void begins_piece() {}
  // Gives up a literal that cannot go on.
  virtual void drop_literal() = 0;

  char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }
  char current() const { return at(at_); }
  bool starts(std::string_view what) const { return text_.compare(at_, what.size(), what) == 0; }
  bool done() const { return at_ >= text_.size(); }
  // Over one character, which may have two bytes.
  void skip_character();
  // One CR LF, LF or CR.
  void skip_line_end();
  void to_line_end();
  void skip_blanks();
  void skip_name();
  // Behind `closer`, or to the end of the piece and false.
  bool skip_past(std::string_view closer);
  // A number of any of these languages: digits, letters, dots, a sign behind an exponent.
  void number();
  // The longest of `operators`, which are sorted longest first and separated by blanks; one character else.
  void operator_of(std::string_view operators);

  std::string_view text_;
  std::size_t at_ = 0;

 private:
  const TextCoding* coding_;
};

// For a language that is not known here: the rule of quotes.
std::unique_ptr<Lexer> make_lexer(Language language, const TextCoding* coding);

std::unique_ptr<Lexer> make_vbscript_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_javascript_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_java_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_php_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_plain_lexer(const TextCoding* coding);

}  // namespace kavo::script
