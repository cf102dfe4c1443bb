// The part of ExpressionScanner that collects values and reports what is joined at the end of an expression.
#include "formats/script/expression_scanner.h"

#include <algorithm>

namespace kavo::script {

ExpressionScanner::ExpressionScanner(Language language, std::string_view text, ExpressionSink& sink)
    : language_(language), text_(text), sink_(sink), frames_(1) {}

void ExpressionScanner::token(const Token& token) {
  // The string was never closed: the next token begins a new statement.
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

// When a value follows another one without an operator, it begins a new statement or the arguments of a command, or the
// first value was the type of a name.
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

// True after a name such as "MsgBox" that takes arguments without parentheses.
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
  frame.computes = false;
}

void ExpressionScanner::literal(const Token& token) {
  before_value();
  after_member_ = false;
  Frame& frame = top();
  // "a" * "b", -"a"
  const bool is_operand = (frame.absorbs && !frame.plus) || frame.computes;
  if (is_operand && token.ends) {
    Item alone = {.is_literal = true, .begin = token.begin, .end = token.end, .form = token.form, .open = token.open};
    alone.close = token.close;
    emit({&alone, 1}, {.kind = PlaceKind::kOperand});
    return add_operand(token.begin, token.end, {});
  }
  if (frame.plus || is_operand) frame.is_fixed = true;
  if (frame.computes) items_.push_back({.begin = frame.unary, .end = token.begin});
  frame.unary = kNone;
  frame.computes = false;
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

// Begins code inside a literal. The next piece of the literal ends the code.
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

// When a method of a literal is called, the literal is reported on its own. For the surrounding expression the call is
// an operand.
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
  // The name is extended to "a.b" only if nothing else comes between.
  if (path != kNone && item.end == path + item.name.size() && token.begin - item.end <= 3)
    item.name = text_.substr(path, token.end - path);
  item.end = token.end;
  item.last = word;
  item.is_member = true;
  item.is_called = false;
  item.key = {};
  top().after_value = true;
}

void ExpressionScanner::end_statement() {
  if (top().kind == FrameKind::kObject || (top().kind == FrameKind::kList && top().is_brace))
    top().kind = FrameKind::kBlock;  // the "{" began a block, not an object
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
  after_arrow_ = after_member_ = declares_ = is_constant_ = is_control_ = after_end_ = after_exit_ = false;
}

void ExpressionScanner::clear_expression() {
  Frame& frame = top();
  items_.resize(frame.items);
  frame.after_value = frame.absorbs = frame.plus = frame.is_fixed = frame.is_compared = false;
  frame.unary = kNone;
  frame.computes = false;
}

void ExpressionScanner::end_expression() {
  Frame& frame = top();
  // Response.Write ("a") & "b"
  if (is_basic() && is_statement(frame) && frame.base == PlaceKind::kNowhere && !frame.in_condition &&
      items_.size() > frame.items + 1 && items_[frame.items].is_called)
    frame.target = {.kind = PlaceKind::kArgument, .name = items_[frame.items].name, .last = items_[frame.items].last},
    frame.base = PlaceKind::kArgument;
  const bool is_parameter =
      frame.base == PlaceKind::kNowhere && (frame.is_declaration || (frame.kind == FrameKind::kCall && frame.is_typed));
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
      place.kind = frame.is_loop ? PlaceKind::kLooped : PlaceKind::kCondition;
      place.loop = frame.begin;
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
  // Goes outwards from bracket to bracket as long as the inner value may be the value of the outer expression.
  const auto goes_on = [](PlaceKind kind) {
    return kind == PlaceKind::kGroup || kind == PlaceKind::kArgument || kind == PlaceKind::kElement ||
           kind == PlaceKind::kEntry || kind == PlaceKind::kReceiver || kind == PlaceKind::kOperand;
  };
  // `place` is the place of the innermost frame, or of an operand in it.
  std::size_t frame = frames_.size();
  if (place.kind != PlaceKind::kReceiver && place.kind != PlaceKind::kOperand) --frame;
  while (count < kMostPlaces && frame > 0 && goes_on(places[count - 1].kind)) {
    if (frame < frames_.size() && is_statement(frames_[frame])) break;
    places[count++] = place_of(frames_[--frame]);
  }
  join.places = {places, count};
  // "a" + b is a text from the start, whatever b is.
  const bool begins_with_text = language_ == Language::kVbScript || language_ == Language::kPhp ||
                                items[0].is_literal || (items.size() > 1 && items[1].is_literal);
  join.can_move = !frames_.back().is_fixed && begins_with_text;
  join.is_constant = is_constant_;
  sink_.joined(join);
}

}  // namespace kavo::script
