#include "suite/filters/script/script_units.h"

#include <algorithm>

#include "formats/html/elements.h"
#include "formats/html/entities.h"
#include "platform/trimmed.h"
#include "suite/filters/script/placeholders.h"

namespace kavo::script {

// What an expression scanner finds in one program.
class ScriptUnits::Sink final : public ExpressionSink {
 public:
  Sink(ScriptUnits& units, Language language) : units_(units), language_(language) {}
  void joined(const Join& join) override { units_.join(language_, join); }
  void function_begins(std::string_view name, std::span<const std::string_view> parameters) override {
    units_.flow_.function_begins(language_, name, parameters);
  }
  void loops(std::size_t loop, std::string_view variable) override { units_.flow_.loops(language_, loop, variable); }
  void function_ends() override { units_.flow_.function_ends(); }
  void declared(std::string_view name) override { units_.flow_.declared(language_, name); }

 private:
  ScriptUnits& units_;
  Language language_;
};

struct ScriptUnits::Program {
  Program(ScriptUnits& units, const Piece& piece)
      : language(piece.language),
        element(piece.element),
        sink(units, language),
        lexer(make_lexer(language, &units.coding_)),
        scanner(language, units.text_, sink) {}

  Language language;
  std::size_t element;
  Sink sink;
  std::unique_ptr<Lexer> lexer;
  ExpressionScanner scanner;
};

std::string doubt_of(const Unit& unit) { return "Is this read by people? " + std::string(unit.reason); }

ScriptUnits::ScriptUnits(std::string_view text, const TextCoding& coding, const DestinationRules& rules)
    : text_(text), coding_(coding), flow_(rules) {}

ScriptUnits::~ScriptUnits() = default;

void ScriptUnits::follow(std::span<const Piece> pieces) { walk(pieces); }

void ScriptUnits::turn() {
  for (const auto& program : servers_) program->scanner.finish();
  if (element_) element_->scanner.finish();
  servers_.clear();
  element_.reset();
  flow_.solve();
  flow_.again();
  is_second_ = true;
}

void ScriptUnits::units(std::span<const Piece> pieces, std::vector<Unit>& units) {
  units_ = &units;
  const std::size_t first = units.size();
  walk(pieces);
  if (element_) element_->scanner.finish();
  element_.reset();
  for (const auto& program : servers_) program->scanner.end_statement();
  std::sort(units.begin() + static_cast<std::ptrdiff_t>(first), units.end(),
            [](const Unit& a, const Unit& b) { return a.begin != b.begin ? a.begin < b.begin : a.end > b.end; });
  leave_out_of_tags(units, first);
}

// Programs read what an operand writes into a tag, unless it contains markup of its own.
void ScriptUnits::leave_out_of_tags(std::vector<Unit>& units, std::size_t first) {
  std::ranges::sort(in_tags_, {}, &Range::begin);
  std::size_t next = 0;
  std::size_t end = 0;  // the furthest end of the operands that begin before the unit
  const auto is_in_tag = [&](const Unit& unit) {
    for (; next < in_tags_.size() && in_tags_[next].begin <= unit.begin; ++next)
      end = std::max(end, in_tags_[next].end);
    return unit.end <= end && !unit.has_markup;
  };
  const auto from = units.begin() + static_cast<std::ptrdiff_t>(first);
  units.erase(std::remove_if(from, units.end(), is_in_tag), units.end());
  in_tags_.clear();
}

ScriptUnits::Program& ScriptUnits::program_of(const Piece& piece) {
  if (piece.element != 0) {
    if (!element_ || element_->element != piece.element) {
      if (element_) element_->scanner.finish();
      element_ = std::make_unique<Program>(*this, piece);
    }
    return *element_;
  }
  const auto found = std::find_if(servers_.begin(), servers_.end(),
                                  [&](const auto& program) { return program->language == piece.language; });
  if (found != servers_.end()) return **found;
  servers_.push_back(std::make_unique<Program>(*this, piece));
  return *servers_.back();
}

void ScriptUnits::walk(std::span<const Piece> pieces) {
  for (const Piece& piece : pieces) {
    Program& program = program_of(piece);
    in_element_ = piece.element != 0 && !piece.on_server;
    if (piece.language == Language::kUnknown) {
      plain_literals(piece, *program.lexer);
      continue;
    }
    if (piece.element == 0) program.scanner.end_statement();
    if (piece.kind == PieceKind::kValue) program.scanner.begin_value("<%=");
    if (piece.goes_on) program.scanner.foreign(last_end_, piece.begin);
    program.lexer->begin(text_.substr(piece.begin, piece.end - piece.begin),
                         piece.goes_on ? Between::kValue : Between::kPage);
    for (Token token; program.lexer->next(token);) {
      token.begin += piece.begin;
      token.end += piece.begin;
      program.scanner.token(token);
    }
    if (piece.element == 0) program.scanner.end_statement();
    if (piece.element != 0) last_end_ = piece.end;
  }
}

// In an unknown language each literal is a join of its own.
void ScriptUnits::plain_literals(const Piece& piece, Lexer& lexer) {
  lexer.begin(text_.substr(piece.begin, piece.end - piece.begin));
  const Place place;
  for (Token token; lexer.next(token);) {
    if (token.kind != TokenKind::kLiteral) continue;
    const Item item{.is_literal = true,
                    .begin = piece.begin + token.begin,
                    .end = piece.begin + token.end,
                    .form = token.form,
                    .open = token.open,
                    .close = token.close};
    join(piece.language, {.items = {&item, 1}, .places = {&place, 1}, .has_literal = true});
  }
}

void ScriptUnits::markup(std::span<const Item> items, std::vector<Unit>& units) {
  if (items.empty() || items.size() > kMostItems || items.back().end - items.front().begin > kLongestJoin) return;
  units_ = &units;
  in_element_ = false;
  const Join join{.items = items, .places = {}, .has_literal = true, .can_move = true};
  const JoinedText joined = joined_text(items, text_, Language::kUnknown, coding_);
  for (ReadText& read : read_texts(joined, true)) {
    read.has_markup = true;
    if (look_at(shown_text(joined, read)).look != Look::kEmpty)
      add_unit(Language::kUnknown, join, joined, read, {Verdict::kText, ""});
  }
}

namespace {

// The content of such an element is shown as it is, whatever its words are.
bool shows_code(std::string_view element) {
  return std::ranges::any_of(std::initializer_list<std::string_view>{"code", "tt", "kbd", "samp", "var"},
                             [&](std::string_view name) { return html::equal_name(name, element); });
}

}  // namespace

// The text as people see it: a mark for each operand and each element that shows code, no tags, and the characters that
// references stand for.
std::string ScriptUnits::shown_text(const JoinedText& joined, const ReadText& read) {
  std::string text;
  std::size_t place = read.begin;
  std::size_t depth = 0;  // of elements that show code
  for (const TextCode& code : read.codes) {
    if (depth == 0) text.append(joined.text, place, code.begin - place);
    if (code.element.empty() || code.type == "lb") text += kOperandMark;
    if (shows_code(code.element)) {
      if (code.kind == 'o' && depth++ == 0) text += kOperandMark;
      if (code.kind == 'c' && depth != 0) --depth;
    }
    place = code.end;
  }
  if (depth == 0) text.append(joined.text, place, read.end - place);
  // " failed." after a value ends a sentence that the value begins, so it is judged together with the value's mark.
  const std::string_view before = trimmed(std::string_view(joined.text).substr(0, read.begin), " ");
  if (before.ends_with(kOperandMark) && (text.ends_with('.') || text.ends_with('!'))) text.insert(0, 1, kOperandMark);
  if (text.find('&') == std::string::npos) return text;
  std::string shown;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] != '&') {
      shown += text[at++];
      continue;
    }
    const std::string_view rest = std::string_view(text).substr(at, html::kLongestReference);
    const html::Reference reference = html::read_reference(rest, !read.attribute.empty());
    shown += reference.length == 0 ? std::string_view("&") : std::string_view(reference.text);
    at += std::max<std::size_t>(reference.length, 1);
  }
  return shown;
}

// What the literals look like as they are written in the script. That is enough for the first walk.
Looks ScriptUnits::raw_looks(const Join& join) const {
  std::string text;
  bool has_blank = false;
  if (!join.has_literal || join.items.back().end - join.items.front().begin > kLongestJoin) return {};
  for (const Item& item : join.items) {
    if (!item.is_literal) {
      text += kOperandMark;
      continue;
    }
    const std::size_t begin = item.begin + item.open;
    const std::string_view literal = text_.substr(begin, item.end - item.close - begin);
    has_blank = has_blank || literal.find(' ') != std::string_view::npos;
    text += literal;
  }
  return has_blank ? look_at(text) : Looks();
}

void ScriptUnits::join(Language language, const Join& join) {
  if (!is_second_) return flow_.joined(language, join, raw_looks(join));
  if (!join.has_literal || join.items.size() > kMostItems) return;
  if (join.items.back().end - join.items.front().begin > kLongestJoin) return;
  const JoinedText joined = joined_text(join.items, text_, language, coding_);
  if (!joined.is_whole || std::none_of(joined.text.begin(), joined.text.end(), is_name_start)) return;
  const ScriptFlow::Destination destination = flow_.destination(language, join);
  const bool is_page = has(destination.use, Use::kPage);
  for (const std::size_t place : operands_in_tags(joined)) in_tags_.push_back({joined.begin[place], joined.end[place]});
  for (ReadText& read : read_texts(joined, is_page)) {
    read.has_markup = read.has_markup || (is_page && joined.text.find('&') != std::string::npos);
    Decision decision = decide(destination.use, look_at(shown_text(joined, read)), read.in_markup);
    if (decision.verdict == Verdict::kNone) continue;
    if (language == Language::kUnknown) decision = {Verdict::kDoubt, "nothing is known of its language"};
    if (!destination.reason.empty()) decision.reason = destination.reason;
    add_unit(language, join, joined, read, decision);
    units_->back().in_page = is_page;
  }
}

namespace {

// The call or target that takes a text, as its author wrote it.
std::string taker_of(std::span<const Place> places, std::string_view attribute) {
  constexpr std::size_t kLongest = 60;  // bytes
  std::string taker;
  for (const Place& place : places) {
    if (place.name.empty() || place.name.size() > kLongest || place.kind == PlaceKind::kGroup) continue;
    taker = place.name;
    if (place.kind == PlaceKind::kArgument && is_name_start(taker.back())) taker += "()";
    break;
  }
  if (!std::all_of(taker.begin(), taker.end(), [](char c) { return c >= ' ' && c < 0x7F; })) taker.clear();
  if (!attribute.empty()) taker += "@" + std::string(attribute);
  return taker;
}

// The literal of a join that contains the byte at `place`.
const Item& literal_at(std::span<const Item> items, std::size_t place) {
  const auto behind = std::upper_bound(items.begin(), items.end(), place,
                                       [](std::size_t at, const Item& item) { return at < item.begin; });
  const auto before = behind == items.begin() ? items.begin() : behind - 1;
  return before->is_literal || before == items.begin() ? *before : *(before - 1);
}

// Widens a code that begins or ends with an operand, up to the texts of the literals around it.
void widen(std::span<const Item> items, std::size_t& begin, std::size_t& end) {
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i].is_literal) continue;
    if (items[i].begin == begin && i > 0 && items[i - 1].is_literal) begin = items[i - 1].end - items[i - 1].close;
    if (items[i].end == end && i + 1 < items.size() && items[i + 1].is_literal)
      end = items[i + 1].begin + items[i + 1].open;
  }
}

bool holds_operand(std::span<const Item> items, std::size_t begin, std::size_t end) {
  return std::any_of(items.begin(), items.end(), [&](const Item& item) {
    return !item.is_literal && !item.is_inserted && item.begin >= begin && item.end <= end;
  });
}

}  // namespace

// Adds a run of text. What a translator must not change in it becomes a code: an unknown reference, a placeholder for a
// value, an address.
void ScriptUnits::add_run(Unit& unit, const Join& join, const JoinedText& joined, std::size_t begin, std::size_t end) {
  UnitPart run;
  const auto flush = [&](std::size_t place) {
    if (place <= begin) return;
    run.begin = joined.begin[begin];
    run.end = joined.end[place - 1];
    unit.parts.push_back(run);
    run.text.clear();
    begin = place;
  };
  for (std::size_t at = begin; at < end;) {
    const std::string_view rest = std::string_view(joined.text).substr(at, end - at);
    std::size_t code = placeholder_length(rest);
    if (code == 0 && unit.has_markup && rest.front() == '&') {
      const html::Reference reference =
          html::read_reference(rest.substr(0, html::kLongestReference), !unit.attribute.empty());
      if (reference.length != 0 && !reference.text.empty()) {
        run.text += reference.text;
        at += reference.length;
        continue;
      }
      code = reference.length;
    }
    if (code == 0) {
      run.text += rest.front();
      ++at;
      continue;
    }
    flush(at);
    add_code(unit, join, joined, {at, at + code, 's', "x-placeholder", {}});
    unit.parts.back().text = rest.substr(0, code);
    at += code;
    begin = at;
  }
  flush(end);
}

void ScriptUnits::add_code(Unit& unit, const Join& join, const JoinedText& joined, const TextCode& code) {
  UnitPart part;
  part.is_code = true;
  part.begin = joined.begin[code.begin];
  part.end = joined.end[code.end - 1];
  part.kind = code.kind;
  part.type = code.type;
  widen(join.items, part.begin, part.end);
  part.is_operand = std::string_view(joined.text).substr(code.begin, code.end - code.begin).find(kOperandMark) !=
                    std::string_view::npos;
  part.is_ordered = !join.can_move && holds_operand(join.items, part.begin, part.end);
  unit.parts.push_back(part);
}

void ScriptUnits::add_unit(Language language, const Join& join, const JoinedText& joined, const ReadText& read,
                           const Decision& decision) {
  Unit unit;
  unit.begin = joined.begin[read.begin];
  unit.end = joined.end[read.end - 1];
  unit.verdict = decision.verdict;
  unit.reason = decision.reason;
  unit.language = language;
  unit.first = literal_at(join.items, unit.begin).form;
  unit.last = literal_at(join.items, unit.end - 1).form;
  unit.in_element = in_element_;
  unit.has_markup = read.has_markup;
  unit.can_move = join.can_move;
  unit.is_constant = join.is_constant;
  unit.attribute = read.attribute;
  unit.quote = read.quote;
  unit.element = taker_of(join.places, read.attribute);
  std::size_t place = read.begin;
  for (const TextCode& code : read.codes) {
    if (code.begin > place) add_run(unit, join, joined, place, code.begin);
    add_code(unit, join, joined, code);
    place = code.end;
  }
  if (read.end > place) add_run(unit, join, joined, place, read.end);
  // Bytes that join a text and a code belong to the code. Bytes that join two texts are hidden in the first.
  for (std::size_t i = 0; i < unit.parts.size(); ++i) {
    UnitPart& part = unit.parts[i];
    const std::size_t next = i + 1 < unit.parts.size() ? unit.parts[i + 1].begin : unit.end;
    if (part.is_code || i + 1 == unit.parts.size())
      part.end = next;
    else
      unit.parts[i + 1].begin = part.end;
    if (!part.is_code) continue;
    part.before = literal_at(join.items, part.begin == unit.begin ? part.begin : part.begin - 1).form;
    part.after = literal_at(join.items, i + 1 < unit.parts.size() ? part.end : part.end - 1).form;
  }
  units_->push_back(std::move(unit));
}

}  // namespace kavo::script
