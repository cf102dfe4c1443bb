// The texts of a page's scripts, found in two walks: the first sees where names go, the second what is read.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formats/script/expression_scanner.h"
#include "formats/script/page_scripts.h"
#include "suite/filters/script/markup_texts.h"
#include "suite/filters/script/script_flow.h"

namespace kavo::script {

struct UnitPart {
  bool is_code = false;
  std::size_t begin = 0;  // its bytes in the text of all blocks; all parts together are the unit's
  std::size_t end = 0;
  std::string text;  // of a run, and what a code that stands in a text shows: UTF-8
  // Of a code.
  char kind = 's';  // as in TextCode
  std::string_view type;
  bool is_operand = false;                    // holds what the script computes
  bool is_ordered = false;                    // and may not change places with others
  LiteralForm before = LiteralForm::kDouble;  // of the literal that it begins in
  LiteralForm after = LiteralForm::kDouble;   // and of that it ends in
};

// A text that people read, or may read.
struct Unit {
  std::size_t begin = 0;  // from its first to its last byte, both in literals
  std::size_t end = 0;
  std::vector<UnitPart> parts;
  Verdict verdict = Verdict::kNone;
  std::string_view reason;
  Language language = Language::kUnknown;
  LiteralForm first = LiteralForm::kDouble;  // of the literals that it begins and ends in
  LiteralForm last = LiteralForm::kDouble;
  bool in_element = false;  // of a client's <script>
  bool has_markup = false;
  bool can_move = false;     // its operands may change places
  bool is_constant = false;  // one literal, which nothing may interrupt
  std::string_view attribute;
  char quote = 0;       // of an attribute's value; 0 for one without
  std::string element;  // what takes it ("alert()", "document.title"), "" when nothing does
};

// What a translator is asked about a text in doubt.
std::string doubt_of(const Unit& unit);

class ScriptUnits {
 public:
  // `text` is that of all blocks, in the bytes of `coding`; both and the rules must outlive the object.
  ScriptUnits(std::string_view text, const TextCoding& coding, const DestinationRules& rules);
  ~ScriptUnits();

  // All blocks go through follow() in order. Then turn() is called, and they go through units() in the same order,
  // which appends the units of each block, every unit after those around it.
  void follow(std::span<const Piece> pieces);
  void turn();
  void units(std::span<const Piece> pieces, std::vector<Unit>& units);

  // The texts of markup that stands in no literal, each of them one that people read. `items`: its runs as literals,
  // and what scripts write into it.
  void markup(std::span<const Item> items, std::vector<Unit>& units);

 private:
  class Sink;
  struct Program;

  void walk(std::span<const Piece> pieces);
  Program& program_of(const Piece& piece);
  void plain_literals(const Piece& piece, Lexer& lexer);
  void join(Language language, const Join& join);
  Looks raw_looks(const Join& join) const;
  void leave_out_of_tags(std::vector<Unit>& units, std::size_t first);
  static std::string shown_text(const JoinedText& joined, const ReadText& read);
  void add_run(Unit& unit, const Join& join, const JoinedText& joined, std::size_t begin, std::size_t end);
  void add_code(Unit& unit, const Join& join, const JoinedText& joined, const TextCode& code);
  void add_unit(Language language, const Join& join, const JoinedText& joined, const ReadText& read,
                const Decision& decision);

  std::string_view text_;
  const TextCoding& coding_;
  ScriptFlow flow_;
  std::vector<std::unique_ptr<Program>> servers_;
  std::unique_ptr<Program> element_;
  std::size_t last_end_ = 0;  // of the element's last piece
  bool is_second_ = false;
  bool in_element_ = false;
  std::vector<Unit>* units_ = nullptr;
  struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  std::vector<Range> in_tags_;  // operands of the block's joins
};

}  // namespace kavo::script
