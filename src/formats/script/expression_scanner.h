// Follows the expressions of one program from token to token.
//
// No tree is built: a stack of open brackets holds what is joined so far in each, so that brackets may nest as deep as
// they like. A token that is not understood ends the statement; the scan goes on with the next one.
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
  // `text` is that of all blocks; it and the sink must outlive the scanner.
  ExpressionScanner(Language language, std::string_view text, ExpressionSink& sink);

  // The next token of the program; its place is in the text of all blocks.
  void token(const Token& token);
  // Code of another language in the place of an operand or of a part of a literal.
  void foreign(std::size_t begin, std::size_t end);
  // For a block "<%= value %>": what comes between these two calls is one argument of a call of `name`.
  void begin_value(std::string_view name);
  void end_value() { end_statement(); }
  // The end of a statement or of the program. Reports every open expression.
  void end_statement();
  void finish();

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  enum class FrameKind : std::uint8_t { kBlock, kControl, kCall, kGroup, kSubscript, kList, kObject, kInserted };

  // An open bracket, and the expression in it that is being read.
  struct Frame {
    FrameKind kind = FrameKind::kBlock;
    std::size_t begin = 0;  // of the bracket
    std::string_view name;  // of a call or a subscript: what stands before the bracket
    std::string_view last;
    unsigned argument = 0;
    std::size_t items = 0;       // the first of the expression, in items_
    std::size_t parameters = 0;  // of a call: the first, in parameters_
    std::size_t parens = 0;      // open "(" since the last "{", this one included
    std::size_t brackets = 0;
    bool is_brace = false;
    bool is_value = false;        // what is in the braces is an operand
    bool is_declaration = false;  // parameters, not arguments
    bool is_plain = true;         // every argument is one name
    bool all_typed = true;        // and each has its type before it
    bool begins_function = false;
    bool is_loop = false;     // "foreach (list as $name)"
    bool names_loop = false;  // behind its "as"

    PlaceKind base = PlaceKind::kNowhere;  // where the expression goes, unless the bracket decides it
    Place target;
    bool has_key = false;  // the value of an entry
    bool in_condition = false;
    bool is_typed = false;  // the name stands behind another one: "String s"

    bool after_value = false;  // an operator may follow
    bool absorbs = false;      // the next value belongs to the operand before it
    bool plus = false;         // the same, unless it is a literal
    bool is_fixed = false;     // holds an operator that does not, or may not, join text
    bool is_compared = false;
    std::size_t unary = kNone;  // where an operator before the next value begins
  };
  Frame& top() { return frames_.back(); }
  std::string_view text_of(const Token& token) const { return text_.substr(token.begin, token.size()); }
  Item* last_item() { return items_.size() > top().items ? &items_.back() : nullptr; }
  bool is_basic() const { return language_ == Language::kVbScript; }
  bool is_statement(const Frame& frame) const { return frame.kind == FrameKind::kBlock; }

  void word(const Token& token);
  void member(const Token& token);
  bool basic_word(WordRole role);
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
  std::vector<Item> items_;                   // of all frames, the innermost at the end
  std::vector<std::string_view> parameters_;  // likewise
  std::size_t functions_ = 0;                 // open ones, of VBScript
  std::size_t braces_ = 0;                    // open frames of these kinds
  std::size_t inserted_ = 0;

  enum class FunctionState : std::uint8_t { kNone, kName, kParameters, kBody };
  FunctionState function_ = FunctionState::kNone;  // what of one is read next
  std::string_view function_name_;
  std::vector<std::string_view> function_parameters_;
  bool is_control_ = false;    // the next "(" holds a condition
  bool is_loop_ = false;       // or a loop over a list
  bool after_arrow_ = false;   // a "{" begins a block
  bool after_member_ = false;  // a name belongs to the operand before it
  bool after_end_ = false;     // behind "End" of VBScript
  bool after_exit_ = false;
  bool declares_ = false;     // behind "var", up to the end of the statement
  bool is_constant_ = false;  // behind "Const" of VBScript, likewise
  bool line_ended_ = false;   // since the last token
};

}  // namespace kavo::script
