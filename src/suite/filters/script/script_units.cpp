#include "suite/filters/script/script_units.h"

#include <algorithm>

#include "formats/html/entities.h"

namespace kavo::script {

// What an expression scanner finds in one program.
class ScriptUnits::Sink final : public ExpressionSink {
 public:
  Sink(ScriptUnits& units, Language language) : units_(units), language_(language) {}
  void joined(const Join& join) override { units_.join(language_, join); }
  void function_begins(std::string_view name, std::span<const std::string_view> parameters) override {
    units_.flow_.function_begins(language_, name, parameters);
  }
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
  std::unique_ptr<Lexer> lexer;  // null for a language without one
  ExpressionScanner scanner;
};

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
    if (!program.lexer) continue;
    in_element_ = piece.element != 0 && !piece.on_server;
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

// As people see it: with a mark for operands, without tags, references as the characters that they mean.
std::string ScriptUnits::shown_text(const JoinedText& joined, const ReadText& read) {
  std::string text;
  std::size_t place = read.begin;
  for (const TextCode& code : read.codes) {
    text.append(joined.text, place, code.begin - place);
    if (code.element.empty() || code.type == "lb") text += kOperandMark;
    place = code.end;
  }
  text.append(joined.text, place, read.end - place);
  if (!read.has_markup && text.find('&') == std::string::npos) return text;
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

void ScriptUnits::join(Language language, const Join& join) {
  if (!is_second_) return flow_.joined(language, join);
  if (!join.has_literal || join.items.back().end - join.items.front().begin > kLongestJoin) return;
  const JoinedText joined = joined_text(join.items, text_, language, coding_);
  if (!joined.is_whole || std::none_of(joined.text.begin(), joined.text.end(), is_name_start)) return;
  const ScriptFlow::Destination destination = flow_.destination(language, join);
  for (const ReadText& read : read_texts(joined, has(destination.use, Use::kPage))) {
    Decision decision = decide(destination.use, look_at(shown_text(joined, read)), read.in_markup);
    if (decision.verdict == Verdict::kNone) continue;
    if (!destination.reason.empty()) decision.reason = destination.reason;
    add_unit(language, join, joined, read, decision);
  }
}

void ScriptUnits::add_unit(Language language, const Join& join, const JoinedText& joined, const ReadText& read,
                           const Decision& decision) {
  Unit unit;
  unit.begin = joined.begin[read.begin];
  unit.end = joined.end[read.end - 1];
  unit.verdict = decision.verdict;
  unit.reason = decision.reason;
  unit.language = language;
  unit.in_element = in_element_;
  unit.has_markup = read.has_markup;
  unit.can_move = join.can_move;
  unit.attribute = read.attribute;
  std::size_t place = read.begin;
  const auto add_run = [&](std::size_t end) {
    if (end <= place) return;
    UnitPart run;
    run.begin = joined.begin[place];
    run.end = joined.end[end - 1];
    run.text = joined.text.substr(place, end - place);
    unit.parts.push_back(run);
  };
  for (const TextCode& code : read.codes) {
    add_run(code.begin);
    UnitPart part;
    part.is_code = true;
    part.begin = joined.begin[code.begin];
    part.end = joined.end[code.end - 1];
    part.kind = code.kind;
    part.type = code.type;
    unit.parts.push_back(part);
    place = code.end;
  }
  add_run(read.end);
  units_->push_back(std::move(unit));
}

}  // namespace kavo::script
