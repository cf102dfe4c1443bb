#include "formats/script/expression_scanner.h"

#include <algorithm>

namespace kavo::script {

ExpressionScanner::ExpressionScanner(Language language, std::string_view text, ExpressionSink& sink)
    : language_(language), text_(text), sink_(sink), frames_(1) {}

void ExpressionScanner::token(const Token& token) {
  // A string that nobody closed: what comes is a statement of its own.
  if (top().kind == FrameKind::kInserted && top().after_value && token.kind != TokenKind::kLiteral &&
      language_ != Language::kPhp && text_[top().begin - 1] != '{')
    end_statement();
  switch (token.kind) {
    case TokenKind::kBlank:
    case TokenKind::kComment:
      return;
    case TokenKind::kLineEnd:
      line_ended_ = true;
      if (is_basic()) end_statement();
      return;
    case TokenKind::kName:
      word(token);
      break;
    case TokenKind::kLiteral:
      token.begins ? literal(token) : literal_goes_on(token);
      break;
    case TokenKind::kNumber:
    case TokenKind::kCharacter:
    case TokenKind::kPattern:
      add_operand(token.begin, token.end, {});
      break;
    case TokenKind::kOperator:
      op(token, role_of_operator(language_, text_of(token)));
      break;
    case TokenKind::kBlockEnd:
      end_statement();
      break;
    case TokenKind::kUnknown:
      break;
  }
  line_ended_ = false;
}

void ExpressionScanner::foreign(std::size_t begin, std::size_t end) { add_operand(begin, end, {}); }

void ExpressionScanner::begin_value(std::string_view name) {
  end_statement();
  top().base = PlaceKind::kArgument;
  top().target = {.kind = PlaceKind::kArgument, .name = name, .last = name};
}

void ExpressionScanner::finish() {
  while (frames_.size() > 1) pop();
  end_statement();
}

// ---- Values

// A value behind another one, with no operator between: the start of a statement, of arguments, or a type before a
// name.
void ExpressionScanner::before_value() {
  Frame& frame = top();
  if (!frame.after_value) return;
  if (is_basic() && is_statement(frame) && takes_arguments())
    command();
  else if (is_basic() || (is_statement(frame) && language_ == Language::kJavaScript))
    end_statement();
  else {
    if (!last_item() || last_item()->is_literal) end_expression();
    clear_expression();
    frame.is_typed = true;
  }
}

// "MsgBox" in front of its arguments.
bool ExpressionScanner::takes_arguments() const {
  const Frame& frame = frames_.back();
  return !frame.in_condition && frame.base == PlaceKind::kNowhere && items_.size() == frame.items + 1 &&
         !items_.back().is_literal && !items_.back().last.empty();
}

void ExpressionScanner::command() {
  Frame& frame = top();
  const Item item = items_.back();
  frame.base = PlaceKind::kArgument;
  frame.target = {.kind = PlaceKind::kArgument, .name = item.name, .last = item.last, .is_member = item.is_member};
  clear_expression();
}

void ExpressionScanner::add_operand(std::size_t begin, std::size_t end, std::string_view name) {
  if (!after_member_) before_value();
  after_member_ = false;
  Frame& frame = top();
  begin = std::min(begin, frame.unary);
  Item* item = frame.absorbs ? last_item() : nullptr;
  if (item == nullptr) {
    items_.push_back({.begin = begin, .is_simple = frame.unary == kNone});
    item = &items_.back();
  }
  item->end = end;
  item->name = item->last = name;
  item->is_called = item->is_member = false;
  item->key = {};
  frame.after_value = true;
  frame.absorbs = frame.plus = false;
  frame.unary = kNone;
}

void ExpressionScanner::literal(const Token& token) {
  before_value();
  after_member_ = false;
  Frame& frame = top();
  if (frame.absorbs && !frame.plus && token.ends) {
    Item alone = {.is_literal = true, .begin = token.begin, .end = token.end, .form = token.form, .open = token.open};
    alone.close = token.close;
    emit({&alone, 1}, {.kind = PlaceKind::kOperand});
    return add_operand(token.begin, token.end, {});
  }
  if (frame.plus || frame.absorbs) frame.is_fixed = true;
  frame.unary = kNone;
  add_literal(token);
}

void ExpressionScanner::add_literal(const Token& token) {
  Item item = {.is_literal = true, .begin = token.begin, .end = token.end, .form = token.form};
  item.begins = token.begins;
  item.ends = token.ends;
  item.open = token.open;
  item.close = token.close;
  items_.push_back(item);
  top().after_value = true;
  top().absorbs = top().plus = false;
  if (!token.ends) open_literal(token.end);
}

// What stands in a literal: up to its next piece.
void ExpressionScanner::open_literal(std::size_t begin) {
  Frame& frame = open(FrameKind::kInserted, begin);
  frame.parens = frame.brackets = 0;
  ++inserted_;
}

void ExpressionScanner::literal_goes_on(const Token& token) {
  if (inserted_ == 0) return;
  while (top().kind != FrameKind::kInserted) pop();
  const std::size_t begin = top().begin;
  pop();
  if (token.begin > begin) {
    Item item = {.begin = begin, .end = token.begin};
    item.is_inserted = true;
    items_.push_back(item);
  }
  add_literal(token);
}

// A literal of which something is asked is one of its own, inside an operand.
void ExpressionScanner::receiver_of(std::string_view member) {
  Item& item = *last_item();
  const Item alone = item;
  const bool is_whole = alone.begins && alone.ends;
  if (is_whole) emit({&alone, 1}, {.kind = PlaceKind::kReceiver, .name = member, .last = member});
  item = {.begin = alone.begin, .end = alone.end};
}

void ExpressionScanner::member(const Token& token) {
  after_member_ = false;
  const std::string_view word = text_of(token);
  if (last_item() == nullptr) return add_operand(token.begin, token.end, word);
  if (last_item()->is_literal) receiver_of(word);
  Item& item = *last_item();
  const std::size_t path = item.name.empty() ? kNone : static_cast<std::size_t>(item.name.data() - text_.data());
  // The path is "a.b" as long as nothing else comes between.
  if (path != kNone && item.end == path + item.name.size() && token.begin - item.end <= 3)
    item.name = text_.substr(path, token.end - path);
  item.end = token.end;
  item.last = word;
  item.is_member = true;
  item.is_called = false;
  item.key = {};
  top().after_value = true;
}

// ---- Words

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
    if (!top().after_value) top().unary = std::min(top().unary, token.begin);
    return;
  }
  if (role != WordRole::kName && (is_basic() ? basic_word(role) : curly_word(token, role))) return;
  if (function_ == FunctionState::kName) {
    function_name_ = text_of(token);
    if (is_basic()) function_ = FunctionState::kParameters;
    return;
  }
  if (top().kind == FrameKind::kInserted && top().after_value) return;  // "$a$b"
  add_operand(token.begin, token.end, text_of(token));
}

bool ExpressionScanner::basic_word(WordRole role) {
  switch (role) {
    case WordRole::kSkipped:
      return true;
    case WordRole::kDeclares:
      end_statement();
      declares_ = true;
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
      end_expression_as(PlaceKind::kNowhere);
      return true;
    case WordRole::kLogic:
      end_expression();
      return true;
    case WordRole::kTight:
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
      if (!top().after_value) top().unary = std::min(top().unary, token.begin);
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
      end_expression_as(PlaceKind::kNowhere);
      return true;
    case WordRole::kLogic:
      end_expression();
      return true;
    case WordRole::kTight:
      top().unary = std::min(top().unary, token.begin);
      return true;
    default:
      return false;
  }
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
    frame.unary = std::min(frame.unary, token.begin);
    return;
  }
  frame.after_value = false;
}

void ExpressionScanner::tight_operator(const Token& token, bool is_plus) {
  Frame& frame = top();
  const std::string_view text = text_of(token);
  if (!frame.after_value) {
    frame.unary = std::min(frame.unary, token.begin);
    return;
  }
  if (last_item() == nullptr) return;
  Item& item = *last_item();
  if (text == "++" || text == "--") {
    item.end = token.end;
    return;
  }
  frame.after_value = false;
  // Minus stands on the same level as the operators that join, plus of PHP in its old versions.
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

// At the end of an argument: it may be a parameter.
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

// ---- Brackets

ExpressionScanner::Frame& ExpressionScanner::open(FrameKind kind, std::size_t begin) {
  Frame frame;
  frame.kind = kind;
  frame.begin = begin;
  frame.items = items_.size();
  frame.parameters = parameters_.size();
  frame.parens = top().parens;
  frame.brackets = top().brackets;
  frames_.push_back(frame);
  return top();
}

void ExpressionScanner::open_paren(std::size_t begin) {
  FrameKind kind = FrameKind::kGroup;
  std::string_view name, last;
  const bool is_declaration =
      function_ == FunctionState::kName || (is_basic() && function_ == FunctionState::kParameters);
  if (is_declaration) {
    kind = FrameKind::kCall;
  } else if (is_control_) {
    kind = FrameKind::kControl;
  } else if (top().after_value && last_item() != nullptr) {
    if (last_item()->is_literal) receiver_of({});
    kind = FrameKind::kCall;
    name = last_item()->name;
    last = last_item()->last;
  }
  if (is_declaration) function_ = FunctionState::kParameters;
  is_control_ = false;
  Frame& frame = open(kind, begin);
  frame.name = name;
  frame.last = last;
  frame.is_declaration = is_declaration;
  ++frame.parens;
}

void ExpressionScanner::open_bracket(std::size_t begin) {
  const bool is_subscript = top().after_value && last_item() != nullptr;
  if (is_subscript && last_item()->is_literal) receiver_of({});
  const Item of = is_subscript ? *last_item() : Item();
  Frame& frame = open(is_subscript ? FrameKind::kSubscript : FrameKind::kList, begin);
  frame.name = of.name;
  frame.last = of.last;
  ++frame.brackets;
}

void ExpressionScanner::open_brace(std::size_t begin) {
  const bool is_function = function_ == FunctionState::kBody;
  Frame& outer = top();
  const bool in_value = !is_statement(outer) || outer.base != PlaceKind::kNowhere;
  FrameKind kind = FrameKind::kBlock;
  bool is_value = false;
  if (is_function) {
    is_value = in_value;
  } else if (after_arrow_) {
    is_value = true;
  } else if (language_ == Language::kJavaScript && in_value && !outer.after_value &&
             outer.kind != FrameKind::kControl) {
    kind = FrameKind::kObject;
    is_value = true;
  } else if (language_ == Language::kJava && in_value && (last_item() == nullptr || !last_item()->is_called)) {
    kind = FrameKind::kList;
    is_value = true;
    clear_expression();
  }
  if (is_function && function_name_.empty()) function_name_ = outer.target.last;
  if (!is_value) end_statement();
  after_arrow_ = false;
  Frame& frame = open(kind, begin);
  frame.is_brace = true;
  frame.is_value = is_value;
  frame.begins_function = is_function;
  frame.parens = frame.brackets = 0;
  ++braces_;
  if (is_function) function_begins();
}

void ExpressionScanner::function_begins() {
  sink_.function_begins(function_name_, function_parameters_);
  if (is_basic()) ++functions_;
  function_ = FunctionState::kNone;
}

void ExpressionScanner::close_paren(std::size_t end) {
  if (top().parens == 0) return;
  const std::size_t parens = top().parens;
  while (frames_[frames_.size() - 2].parens == parens) pop();
  Frame frame = top();
  std::string_view key;
  if (frame.kind == FrameKind::kCall) {
    parameter();
    const Item* const item = last_item();
    if (item != nullptr && item->is_literal && frame.argument == 0)
      key = text_.substr(item->begin, item->end - item->begin);
    frame = top();
    const bool may_be_function =
        frame.is_declaration || (language_ == Language::kJava ? frame.all_typed && frame.is_plain
                                                              : language_ == Language::kJavaScript && frame.is_plain);
    if (may_be_function && (function_ == FunctionState::kNone || frame.is_declaration)) {
      function_ = FunctionState::kBody;
      if (!frame.is_declaration) function_name_ = frame.last;
      function_parameters_.assign(parameters_.begin() + static_cast<std::ptrdiff_t>(frame.parameters),
                                  parameters_.end());
    }
  }
  pop();
  if (frame.kind == FrameKind::kControl) return end_statement();
  if (frame.is_declaration) return;
  if (frame.kind == FrameKind::kCall && last_item() != nullptr) {
    last_item()->end = end;
    last_item()->is_called = true;
    last_item()->key = key;
    top().after_value = true;
    return;
  }
  add_operand(frame.begin, end, {});
}

void ExpressionScanner::close_bracket(std::size_t end) {
  if (top().brackets == 0) return;
  const std::size_t brackets = top().brackets;
  while (frames_[frames_.size() - 2].brackets == brackets) pop();
  const Frame frame = top();
  const Item* const item = last_item();
  const std::string_view key =
      item != nullptr && item->is_literal ? text_.substr(item->begin, item->end - item->begin) : std::string_view();
  pop();
  if (frame.kind == FrameKind::kSubscript && last_item() != nullptr) {
    last_item()->end = end;
    last_item()->key = key;
    top().after_value = true;
    return;
  }
  add_operand(frame.begin, end, {});
}

void ExpressionScanner::close_brace(std::size_t end) {
  if (braces_ == 0) return end_statement();
  while (!top().is_brace) pop();
  const Frame frame = top();
  pop();
  if (frame.is_value && !is_statement(top())) return add_operand(frame.begin, end, {});
  if (frame.is_value && top().base != PlaceKind::kNowhere) return add_operand(frame.begin, end, {});
  end_statement();
}

void ExpressionScanner::pop() {
  if (top().kind == FrameKind::kInserted) --inserted_;
  if (top().is_brace) --braces_;
  end_expression();
  if (top().begins_function) sink_.function_ends();
  items_.resize(top().items);
  parameters_.resize(top().parameters);
  frames_.pop_back();
}

// ---- Ends

void ExpressionScanner::end_statement() {
  if (top().kind == FrameKind::kObject || (top().kind == FrameKind::kList && top().is_brace))
    top().kind = FrameKind::kBlock;  // a block after all
  while (!is_statement(top()) && top().kind != FrameKind::kControl) pop();
  end_expression();
  begin_statement();
  if (is_basic() && (function_ == FunctionState::kParameters || function_ == FunctionState::kBody)) function_begins();
  if (function_ == FunctionState::kBody) function_ = FunctionState::kNone;
}

void ExpressionScanner::begin_statement() {
  clear_expression();
  Frame& frame = top();
  frame.base = PlaceKind::kNowhere;
  frame.target = {};
  frame.has_key = frame.in_condition = frame.is_typed = false;
  frame.argument = 0;
  after_arrow_ = after_member_ = declares_ = is_control_ = after_end_ = after_exit_ = false;
}

void ExpressionScanner::clear_expression() {
  Frame& frame = top();
  items_.resize(frame.items);
  frame.after_value = frame.absorbs = frame.plus = frame.is_fixed = frame.is_compared = false;
  frame.unary = kNone;
}

void ExpressionScanner::end_expression() {
  Frame& frame = top();
  // Response.Write ("a") & "b"
  if (is_basic() && is_statement(frame) && frame.base == PlaceKind::kNowhere && !frame.in_condition &&
      items_.size() > frame.items + 1 && items_[frame.items].is_called)
    frame.target = {.kind = PlaceKind::kArgument, .name = items_[frame.items].name, .last = items_[frame.items].last},
    frame.base = PlaceKind::kArgument;
  const bool is_parameter =
      frame.is_declaration || (frame.kind == FrameKind::kCall && frame.is_typed && frame.base == PlaceKind::kNowhere);
  const bool only_declares = declares_ && is_statement(frame) && frame.base == PlaceKind::kNowhere;
  if (only_declares && items_.size() == frame.items + 1 && !items_.back().name.empty())
    sink_.declared(items_.back().name);
  else if (items_.size() > frame.items && !is_parameter)
    emit(std::span(items_).subspan(frame.items), place_of(frame));
  clear_expression();
}

void ExpressionScanner::end_expression_as(PlaceKind kind) {
  Frame& frame = top();
  if (items_.size() > frame.items && !frame.is_declaration) {
    Place place;
    place.kind = kind;
    emit(std::span(items_).subspan(frame.items), place);
  }
  clear_expression();
}

Place ExpressionScanner::place_of(const Frame& frame) const {
  Place place;
  if (frame.is_compared) {
    place.kind = PlaceKind::kCompared;
    return place;
  }
  if (frame.in_condition) {
    place.kind = PlaceKind::kCondition;
    return place;
  }
  if (frame.base != PlaceKind::kNowhere) {
    place = frame.target;
    place.kind = frame.base;
    return place;
  }
  place.name = frame.name;
  place.last = frame.last;
  place.argument = frame.argument;
  switch (frame.kind) {
    case FrameKind::kBlock:
      place.kind = PlaceKind::kNowhere;
      break;
    case FrameKind::kControl:
      place.kind = PlaceKind::kCondition;
      break;
    case FrameKind::kCall:
      place.kind = PlaceKind::kArgument;
      break;
    case FrameKind::kSubscript:
      place.kind = PlaceKind::kSubscript;
      break;
    case FrameKind::kList:
      place.kind = PlaceKind::kElement;
      break;
    case FrameKind::kObject:
      place.kind = PlaceKind::kKey;
      break;
    case FrameKind::kGroup:
    case FrameKind::kInserted:
      place.kind = PlaceKind::kGroup;
      break;
  }
  return place;
}

void ExpressionScanner::emit(std::span<const Item> items, const Place& place) {
  Join join;
  join.items = items;
  for (const Item& item : items) join.has_literal = join.has_literal || item.is_literal;
  Place places[kMostPlaces];
  std::size_t count = 0;
  places[count++] = place;
  // Outwards, as long as what is in the bracket may be what comes out of it.
  const auto goes_on = [](PlaceKind kind) {
    return kind == PlaceKind::kGroup || kind == PlaceKind::kArgument || kind == PlaceKind::kElement ||
           kind == PlaceKind::kEntry || kind == PlaceKind::kReceiver || kind == PlaceKind::kOperand;
  };
  // `place` is that of the innermost frame, or of an operand in it.
  std::size_t frame = frames_.size();
  if (place.kind != PlaceKind::kReceiver && place.kind != PlaceKind::kOperand) --frame;
  while (count < kMostPlaces && frame > 0 && goes_on(places[count - 1].kind)) {
    if (frame < frames_.size() && is_statement(frames_[frame])) break;
    places[count++] = place_of(frames_[--frame]);
  }
  join.places = {places, count};
  // "a" + b: text from the start on, whatever b is.
  const bool begins_with_text = language_ == Language::kVbScript || language_ == Language::kPhp ||
                                items[0].is_literal || (items.size() > 1 && items[1].is_literal);
  join.can_move = !frames_.back().is_fixed && begins_with_text;
  sink_.joined(join);
}

}  // namespace kavo::script
