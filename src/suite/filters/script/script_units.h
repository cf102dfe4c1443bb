// Finds the texts of a page's scripts in two walks. The first finds out where names go, the second which literals
// people read.
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
  std::size_t begin = 0;  // offsets in the text of all blocks; the parts together cover the unit
  std::size_t end = 0;
  std::string text;  // UTF-8: the text of a run, or what a code inside a text shows
  // The following are set for codes.
  char kind = 's';  // as in TextCode
  std::string_view type;
  bool is_operand = false;                    // it holds what the script computes
  bool is_ordered = false;                    // it must not change places with other operands
  LiteralForm before = LiteralForm::kDouble;  // the literal in which it begins
  LiteralForm after = LiteralForm::kDouble;   // the literal in which it ends
};

// A text that people read, or may read.
struct Unit {
  std::size_t begin = 0;  // its first byte, which is in a literal, like its last one
  std::size_t end = 0;
  std::vector<UnitPart> parts;
  Verdict verdict = Verdict::kNone;
  std::string_view reason;
  Language language = Language::kUnknown;
  LiteralForm first = LiteralForm::kDouble;  // the forms of the literals in which it begins and ends
  LiteralForm last = LiteralForm::kDouble;
  bool in_element = false;  // in a <script> that the browser runs
  bool has_markup = false;
  bool in_page = false;      // goes into a page, where what looks like a tag is one
  bool can_move = false;     // its operands may change places
  bool is_constant = false;  // one literal that must not be interrupted
  std::string_view attribute;
  char quote = 0;       // of an attribute's value; 0 for one without
  std::string element;  // what takes the text ("alert()", "document.title"), or ""
};

// What a translator is asked about a text in doubt.
std::string doubt_of(const Unit& unit);

class ScriptUnits {
 public:
  // `text` is the text of all blocks, in the bytes of `coding`. Both and the rules must outlive the object.
  ScriptUnits(std::string_view text, const TextCoding& coding, const DestinationRules& rules);
  ~ScriptUnits();

  // Hand all blocks to follow() in order, call turn(), and hand them to units() in the same order. It appends the units
  // of each block, every unit after those around it.
  void follow(std::span<const Piece> pieces);
  void turn();
  void units(std::span<const Piece> pieces, std::vector<Unit>& units);

  // Appends the texts of markup that is not in a literal; people read each of them. `items` are the runs of the markup,
  // as literals, and what scripts write into it.
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
  std::vector<Range> in_tags_;  // the operands of the block's joins that are inside tags
};

}  // namespace kavo::script
