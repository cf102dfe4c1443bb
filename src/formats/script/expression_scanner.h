// Follows the expressions of one program from token to token.
//
// No tree is built. A stack of open brackets holds what has been joined so far in each, so brackets may nest to any
// depth. A token that is not understood ends the statement; the scan goes on with the next one.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "formats/script/expression.h"
#include "formats/script/lexer.h"
#include "formats/script/words.h"

namespace kavo::script {

class ExpressionScanner {
 public:
  // `text` is the text of all blocks. It and the sink must outlive the scanner.
  ExpressionScanner(Language language, std::string_view text, ExpressionSink& sink);

  // Takes the next token of the program. The token's place is an offset in the text of all blocks.
  void token(const Token& token);
  // Takes code of another language that stands for an operand or for a part of a literal.
  void foreign(std::size_t begin, std::size_t end);
  // For a block "<%= value %>": the tokens between these two calls are one argument of a call of `name`.
  void begin_value(std::string_view name);
  void end_value() { end_statement(); }
  // Ends a statement, or the program. Both report every open expression.
  void end_statement();
  void finish();

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  enum class FrameKind : std::uint8_t { kBlock, kControl, kCall, kGroup, kSubscript, kList, kObject, kInserted };

  // An open bracket and the expression that is being read in it.
  struct Frame {
    FrameKind kind = FrameKind::kBlock;
    std::size_t begin = 0;  // of the bracket
    std::string_view name;  // of a call or a subscript: the name before the bracket
    std::string_view last;
    unsigned argument = 0;
    std::size_t items = 0;       // where the expression begins in items_
    std::size_t parameters = 0;  // of a call: where its parameters begin in parameters_
    std::size_t parens = 0;      // open "(" since the last "{", this one included
    std::size_t brackets = 0;
    bool is_brace = false;
    bool is_value = false;        // the braces are an operand of the expression around them
    bool is_declaration = false;  // it holds parameters, not arguments
    bool is_plain = true;         // every argument is one name
    bool all_typed = true;        // every argument has its type before it
    bool begins_function = false;
    bool is_loop = false;     // "foreach (list as $name)"
    bool names_loop = false;  // after the "as" of such a loop

    PlaceKind base = PlaceKind::kNowhere;  // where the expression goes, unless the bracket decides it
    Place target;
    bool has_key = false;  // a key was read: what follows is the value of an entry
    bool in_condition = false;
    bool is_typed = false;  // the last name followed another one: "String s"

    bool after_value = false;  // an operator may follow
    bool absorbs = false;      // the next value belongs to the operand before it
    bool plus = false;         // the same, unless the next value is a literal
    bool is_fixed = false;     // it holds an operator that does not, or might not, join text
    bool is_compared = false;
    std::size_t unary = kNone;  // where an operator, or a word like "new", before the next value begins
    bool computes = false;      // it is an operator: what comes of a literal behind it is no text
  };
  Frame& top() { return frames_.back(); }
  std::string_view text_of(const Token& token) const { return text_.substr(token.begin, token.size()); }
  void before_operand(std::size_t begin, bool computes) {
    top().unary = std::min(top().unary, begin);
    top().computes = top().computes || computes;
  }
  Item* last_item() { return items_.size() > top().items ? &items_.back() : nullptr; }
  bool is_basic() const { return language_ == Language::kVbScript; }
  bool is_statement(const Frame& frame) const { return frame.kind == FrameKind::kBlock; }

  void word(const Token& token);
  void member(const Token& token);
  bool basic_word(const Token& token, WordRole role);
  bool curly_word(const Token& token, WordRole role);
  void literal(const Token& token);
  void literal_goes_on(const Token& token);
  void op(const Token& token, OperatorRole role);
  void separator(OperatorRole role);
  void text_operator(const Token& token);
  void tight_operator(const Token& token, bool is_plus);
  void looser_operator(bool compares);
  void assigns();
  void colon();
  void arrow();
  void loop_word(std::string_view word);
  void comma();
  void parameter();
  Frame& open(FrameKind kind, std::size_t begin);
  void open_paren(std::size_t begin);
  void open_bracket(std::size_t begin);
  void open_brace(std::size_t begin);
  void open_literal(std::size_t begin);
  void close_paren(std::size_t end);
  void close_bracket(std::size_t end);
  void close_brace(std::size_t end);
  void pop();
  void function_begins();

  void before_value();
  void add_operand(std::size_t begin, std::size_t end, std::string_view name);
  void add_literal(const Token& token);
  void receiver_of(std::string_view member);
  void command();
  bool takes_arguments() const;
  void clear_expression();
  void end_expression();
  void end_expression_as(PlaceKind kind);
  void begin_statement();
  void emit(std::span<const Item> items, const Place& place);
  Place place_of(const Frame& frame) const;

  Language language_;
  std::string_view text_;
  ExpressionSink& sink_;
  std::vector<Frame> frames_;
  std::vector<Item> items_;                   // the items of all frames, the innermost frame's last
  std::vector<std::string_view> parameters_;  // in the same order
  std::size_t functions_ = 0;                 // open functions of VBScript
  std::size_t braces_ = 0;                    // how many open frames are braces
  std::size_t inserted_ = 0;                  // how many open frames are code in a literal

  enum class FunctionState : std::uint8_t { kNone, kName, kParameters, kBody };
  FunctionState function_ = FunctionState::kNone;  // which part of a function is read next
  std::string_view function_name_;
  std::vector<std::string_view> function_parameters_;
  bool is_control_ = false;    // the next "(" holds a condition
  bool is_loop_ = false;       // the next "(" holds a loop over a list
  bool after_arrow_ = false;   // a "{" begins a block
  bool after_member_ = false;  // the next name belongs to the operand before it
  bool after_end_ = false;     // after "End" of VBScript
  bool after_exit_ = false;
  bool declares_ = false;     // after "var", until the statement ends
  bool is_constant_ = false;  // after "Const" of VBScript, until the statement ends
  bool line_ended_ = false;   // a line ended since the last token
};

}  // namespace kavo::script
