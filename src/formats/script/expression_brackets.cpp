// The part of ExpressionScanner that opens and closes brackets, each a frame on the stack.
#include "formats/script/expression_scanner.h"

namespace kavo::script {

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
  Frame& frame = open(kind, begin);
  frame.is_loop = is_control_ && is_loop_;
  is_control_ = false;
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
  if (frame.names_loop) {
    if (const Item* const item = last_item(); item != nullptr && !item->name.empty())
      sink_.loops(frame.begin, item->name);
    clear_expression();
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

}  // namespace kavo::script
