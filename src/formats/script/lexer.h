// Cuts scripts into tokens.
//
// A script may come in several pieces, with something of another language between them: a client script with server
// blocks in it, server blocks with page text between them. A string, a comment or a template that a block interrupts
// continues in the next piece where the language allows that. Bytes that are not valid in the language become tokens,
// too.
//
// The grammars: VBScript Language Reference; ECMA-262; The Java Language Specification, chapter 3; the PHP manual,
// "Strings" and "Comments".
#pragma once

#include <memory>
#include <string_view>

#include "formats/script/token.h"
#include "formats/text/text_coding.h"

namespace kavo::script {

// What was between the last piece and this one.
enum class Between : std::uint8_t {
  kValue,  // a value that is inserted into the script: strings and comments continue after it
  kPage,   // page text: a comment continues after it, a string does not
};

class Lexer {
 public:
  virtual ~Lexer() = default;
  // Begins a piece. Its bytes must stay in place until the next piece begins. No character may be cut at either end of
  // `text`.
  void begin(std::string_view text, Between between = Between::kPage);
  // Reads the next token. False at the end of the piece.
  bool next(Token& token);
  // True when the piece ended inside a literal, which the next piece may carry on.
  virtual bool inside_literal() const = 0;

 protected:
  // `coding` is the coding of the script's bytes, or null, and must outlive the lexer. It is needed because in a
  // double-byte coding the second byte of a character may look like a backslash.
  explicit Lexer(const TextCoding* coding) : coding_(coding) {}

  // Scans the token at at_, fills it in and moves at_ past it. Called only while there are bytes left.
  virtual void scan(Token& token) = 0;
  // Called when a new piece begins. Places that were noted in the last piece no longer count.
  virtual void begins_piece() {}
  // Gives up a literal that cannot continue.
  virtual void drop_literal() = 0;

  char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }
  char current() const { return at(at_); }
  bool starts(std::string_view what) const { return text_.compare(at_, what.size(), what) == 0; }
  bool done() const { return at_ >= text_.size(); }
  // Skips one character, which may have two bytes.
  void skip_character();
  // Skips one CR LF, LF or CR.
  void skip_line_end();
  void to_line_end();
  void skip_blanks();
  void skip_name();
  // Reads a run of blanks or one line end. False when anything else is there.
  bool white_space(Token& token);
  // Moves past the next `closer`. If the piece holds none, moves to its end and returns false.
  bool skip_past(std::string_view closer);
  // Reads a number as any of these languages writes it: digits, letters, dots, a sign after an exponent.
  void number();
  // Reads the longest of `operators` that matches here, or one character when none does. `operators` are separated by
  // blanks, the longest first.
  void operator_of(std::string_view operators);

  std::string_view text_;
  std::size_t at_ = 0;

 private:
  const TextCoding* coding_;
};

// An unknown language gets the plain lexer.
std::unique_ptr<Lexer> make_lexer(Language language, const TextCoding* coding);

std::unique_ptr<Lexer> make_vbscript_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_javascript_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_java_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_php_lexer(const TextCoding* coding);
std::unique_ptr<Lexer> make_plain_lexer(const TextCoding* coding);

}  // namespace kavo::script
