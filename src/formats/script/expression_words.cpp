// The part of ExpressionScanner that handles words and operators: they decide where an expression begins and ends, and
// where its value goes.
#include <algorithm>

#include "formats/script/expression_scanner.h"

namespace kavo::script {

void ExpressionScanner::word(const Token& token) {
  if (after_member_) return member(token);
  const WordRole role = role_of_word(language_, text_of(token));
  if (after_end_ || after_exit_) {
    if (after_end_ && role == WordRole::kFunction && functions_ != 0) {
      --functions_;
      sink_.function_ends();
    }
    after_end_ = after_exit_ = false;
    return;
  }
  if (role == WordRole::kFunction) {
    if (is_basic()) end_statement();
    function_ = FunctionState::kName;
    function_name_ = {};
    function_parameters_.clear();
    if (!top().after_value) before_operand(token.begin, false);
    return;
  }
  if (role != WordRole::kName && (is_basic() ? basic_word(token, role) : curly_word(token, role))) return;
  if (function_ == FunctionState::kName) {
    function_name_ = text_of(token);
    if (is_basic()) function_ = FunctionState::kParameters;
    return;
  }
  if (top().kind == FrameKind::kInserted && top().after_value) return;  // "$a$b"
  add_operand(token.begin, token.end, text_of(token));
}

bool ExpressionScanner::basic_word(const Token& token, WordRole role) {
  switch (role) {
    case WordRole::kSkipped:
      return true;
    case WordRole::kDeclares:
    case WordRole::kConstant:
      end_statement();
      declares_ = true;
      is_constant_ = role == WordRole::kConstant;
      return true;
    case WordRole::kControl:
      end_statement();
      top().in_condition = true;
      return true;
    case WordRole::kCase:
      end_statement();
      top().base = PlaceKind::kCompared;
      return true;
    case WordRole::kEnd:
    case WordRole::kExit:
      end_statement();
      (role == WordRole::kEnd ? after_end_ : after_exit_) = true;
      return true;
    case WordRole::kStatement:
      end_statement();
      return true;
    case WordRole::kSeparator:
      loop_word("in");
      return true;
    case WordRole::kLogic:
      end_expression();
      return true;
    case WordRole::kTight:
      if (!top().after_value) before_operand(token.begin, true);
      top().absorbs = top().after_value;
      top().after_value = false;
      return true;
    default:
      return false;
  }
}

bool ExpressionScanner::curly_word(const Token& token, WordRole role) {
  const bool in_statement = is_statement(top());
  if (in_statement && top().after_value && line_ended_) end_statement();
  switch (role) {
    case WordRole::kSkipped:
      if (!top().after_value) before_operand(token.begin, false);
      return true;
    case WordRole::kDeclares:
      if (in_statement) end_statement();
      declares_ = true;
      return true;
    case WordRole::kReturns:
      if (!in_statement) return false;
      end_statement();
      top().base = PlaceKind::kReturned;
      return true;
    case WordRole::kCommand:
      if (!in_statement || top().after_value) return false;
      begin_statement();
      top().base = PlaceKind::kArgument;
      top().target = {.kind = PlaceKind::kArgument, .name = text_of(token), .last = text_of(token)};
      return true;
    case WordRole::kControl:
      if (!in_statement) return false;
      end_statement();
      is_control_ = true;
      is_loop_ = equal_word(text_of(token), "foreach");
      return true;
    case WordRole::kCase:
      if (!in_statement) return false;
      end_statement();
      top().base = PlaceKind::kCompared;
      return true;
    case WordRole::kStatement:
      if (!in_statement) return false;
      end_statement();
      return true;
    case WordRole::kSeparator:
      loop_word(text_of(token));
      return true;
    case WordRole::kLogic:
      end_expression();
      return true;
    case WordRole::kTight:
      before_operand(token.begin, true);
      return true;
    default:
      return false;
  }
}

// In "For Each x In list" and "for (x of list)" the elements go to the name before the word. In "foreach ($list as $x)"
// the name comes later.
void ExpressionScanner::loop_word(std::string_view word) {
  Frame& frame = top();
  if (frame.is_loop) {
    end_expression();
    frame.names_loop = true;
    return;
  }
  const Item* const item = last_item();
  const bool takes_elements = language_ == Language::kJavaScript ? word == "of" : is_basic();
  if (!takes_elements || item == nullptr || item->name.empty() || items_.size() != frame.items + 1)
    return end_expression_as(PlaceKind::kNowhere);
  frame.target = {.kind = PlaceKind::kAssigned, .name = item->name, .last = item->last};
  clear_expression();
  frame.base = PlaceKind::kAssigned;
}

// ---- Operators

void ExpressionScanner::op(const Token& token, OperatorRole role) {
  after_member_ = false;
  switch (role) {
    case OperatorRole::kMember:
      // ".Write" inside With
      if (!top().after_value && is_basic()) add_operand(token.begin, token.end, {});
      after_member_ = top().after_value;
      return;
    case OperatorRole::kText:
      return text_operator(token);
    case OperatorRole::kPlus:
      return tight_operator(token, true);
    case OperatorRole::kTight:
      return tight_operator(token, false);
    case OperatorRole::kOpenParen:
      return open_paren(token.begin);
    case OperatorRole::kOpenBracket:
      return open_bracket(token.begin);
    case OperatorRole::kOpenBrace:
      return open_brace(token.begin);
    case OperatorRole::kCloseParen:
      return close_paren(token.end);
    case OperatorRole::kCloseBracket:
      return close_bracket(token.end);
    case OperatorRole::kCloseBrace:
      return close_brace(token.end);
    default:
      return separator(role);
  }
}

void ExpressionScanner::separator(OperatorRole role) {
  switch (role) {
    case OperatorRole::kLoose:
      return looser_operator(false);
    case OperatorRole::kCompares:
      return looser_operator(true);
    case OperatorRole::kLogic:
      return end_expression();
    case OperatorRole::kAssigns:
    case OperatorRole::kAppends:
      return assigns();
    case OperatorRole::kComma:
      return comma();
    case OperatorRole::kSemicolon:
      return end_statement();
    case OperatorRole::kQuestion:
      return end_expression_as(PlaceKind::kCondition);
    case OperatorRole::kColon:
      return colon();
    case OperatorRole::kArrow:
      return arrow();
    default:
      return;
  }
}

void ExpressionScanner::text_operator(const Token& token) {
  Frame& frame = top();
  if (!frame.after_value) {
    before_operand(token.begin, true);
    return;
  }
  frame.after_value = false;
}

void ExpressionScanner::tight_operator(const Token& token, bool is_plus) {
  Frame& frame = top();
  const std::string_view text = text_of(token);
  if (!frame.after_value) {
    before_operand(token.begin, true);
    return;
  }
  if (last_item() == nullptr) return;
  Item& item = *last_item();
  if (text == "++" || text == "--") {
    if (item.is_literal) item = {.begin = item.begin};  // not a text, and not valid either
    item.end = token.end;
    return;
  }
  frame.after_value = false;
  // Minus binds as tightly as the operators that join text. In old versions of PHP plus does, too.
  if (is_plus || text == "-" || text == "+") frame.is_fixed = true;
  if (is_plus && item.is_literal) return;
  if (item.is_literal) {
    const Item alone = item;
    if (alone.begins && alone.ends) emit({&alone, 1}, {.kind = PlaceKind::kOperand});
    item = {.begin = alone.begin, .end = alone.end};
  }
  item.is_simple = false;
  frame.absorbs = true;
  frame.plus = is_plus;
}

void ExpressionScanner::looser_operator(bool compares) {
  end_expression_as(compares ? PlaceKind::kCompared : PlaceKind::kOperand);
  top().is_compared = compares;
}

void ExpressionScanner::assigns() {
  Frame& frame = top();
  const Item* const item = last_item();
  const bool is_target = item != nullptr && !item->is_literal && items_.size() == frame.items + 1;
  if (is_basic() && (!is_statement(frame) || frame.in_condition || frame.base != PlaceKind::kNowhere || !is_target))
    return looser_operator(true);
  frame.base = PlaceKind::kAssigned;
  frame.target = {.kind = PlaceKind::kAssigned};
  if (is_target) {
    frame.target.name = item->name;
    frame.target.last = item->last;
    frame.target.is_member = item->is_member;
    frame.target.key = item->key;
    if ((declares_ || frame.is_typed) && is_statement(frame)) sink_.declared(item->name);
  }
  clear_expression();
}

void ExpressionScanner::colon() {
  Frame& frame = top();
  if (frame.kind == FrameKind::kObject && !frame.has_key) {
    const Item* const item = last_item();
    frame.target = {.kind = PlaceKind::kEntry};
    if (item != nullptr) frame.target.name = frame.target.last = text_.substr(item->begin, item->end - item->begin);
    end_expression_as(PlaceKind::kKey);
    frame.has_key = true;
    frame.base = PlaceKind::kEntry;
    return;
  }
  if (is_statement(frame) && frame.base == PlaceKind::kCompared) return end_statement();
  end_expression();
}

void ExpressionScanner::arrow() {
  Frame& frame = top();
  if (language_ != Language::kPhp) {
    clear_expression();
    after_arrow_ = true;
    return;
  }
  const Item* const item = last_item();
  frame.target = {.kind = PlaceKind::kEntry};
  if (item != nullptr) frame.target.name = frame.target.last = text_.substr(item->begin, item->end - item->begin);
  end_expression_as(PlaceKind::kKey);
  frame.base = PlaceKind::kEntry;
}

void ExpressionScanner::comma() {
  Frame& frame = top();
  if (frame.kind == FrameKind::kCall) parameter();
  // MsgBox ("text"), 64
  if (is_basic() && is_statement(frame) && takes_arguments() && last_item()->is_called) command();
  end_expression();
  frame.has_key = frame.is_typed = false;
  ++frame.argument;
  if (is_statement(frame) && (frame.base == PlaceKind::kArgument || frame.base == PlaceKind::kCompared))
    ++frame.target.argument;
  else
    frame.base = PlaceKind::kNowhere;
}

// Called at the end of an argument, which may turn out to be a parameter.
void ExpressionScanner::parameter() {
  Frame& frame = top();
  std::string_view name;
  if (frame.base == PlaceKind::kAssigned)
    name = frame.target.name;
  else if (items_.size() == frame.items + 1 && !items_.back().is_called)
    name = items_.back().name;
  else if (items_.size() == frame.items && frame.argument == 0)
    return;
  frame.is_plain = frame.is_plain && !name.empty();
  frame.all_typed = frame.all_typed && frame.is_typed;
  parameters_.push_back(name);
}

}  // namespace kavo::script
