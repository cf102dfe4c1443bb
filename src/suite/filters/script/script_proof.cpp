#include "suite/filters/script/script_proof.h"

#include <algorithm>
#include <utility>

#include "formats/html/script_marker.h"
#include "formats/script/literal_value.h"
#include "platform/failure.h"

namespace kavo::script {
namespace {

void append_decoded(std::string_view bytes, const TextCoding& coding, std::string& utf8) {
  coding.decode(bytes, utf8, [&](std::string_view piece) { utf8 += piece; });
}

// True for an expression that stands for a character that no literal of the language can hold: "vbCrLf", "ChrW(233)".
bool is_escape(std::string_view operand) {
  if (operand == "vbCrLf\n") return true;
  constexpr std::string_view kCall = "ChrW\n(\n";
  constexpr std::string_view kEnd = "\n)\n";
  if (operand.size() < kCall.size() + kEnd.size() || !operand.starts_with(kCall) || !operand.ends_with(kEnd))
    return false;
  const std::string_view number = operand.substr(kCall.size(), operand.size() - kCall.size() - kEnd.size());
  return !number.empty() && std::all_of(number.begin(), number.end(), is_digit);
}
bool is_token_of_escape(std::string_view token) {
  return token == "vbCrLf\n" || token == "ChrW\n" || token == "(\n" || token == ")\n" ||
         std::all_of(token.begin(), token.end() - 1, is_digit);
}

std::size_t count(std::string_view text, std::string_view what) {
  std::size_t found = 0;
  for (std::size_t at = 0; at + what.size() <= text.size(); ++at)
    if (equal_word(text.substr(at, what.size()), what)) ++found;
  return found;
}

// These begin or end a script, whatever is around them.
constexpr std::string_view kDelimiters[] = {"<%", "%>", "<?", "?>"};
constexpr std::string_view kDelimitersInElement[] = {"</script", "</java", "<!--", "<script"};

bool is_one_of(const Token& token, std::string_view bytes, std::string_view brackets) {
  return token.kind == TokenKind::kOperator && bytes.size() == 1 && brackets.find(bytes[0]) != std::string_view::npos;
}

}  // namespace

// Collects the operands of an expression that joins texts.
class ScriptProof::Operands {
 public:
  explicit Operands(const TextCoding& coding) : coding_(coding) {}

  void add(const ScriptReader::Read& read, std::string_view bytes) {
    const Token& token = read.token;
    if (token.kind != TokenKind::kName) after_value_ = false;
    const bool is_blank =
        token.kind == TokenKind::kBlank || token.kind == TokenKind::kLineEnd || token.kind == TokenKind::kComment;
    if (is_blank && !read.is_between) return;
    const bool is_literal = token.kind == TokenKind::kLiteral && !read.is_between;
    if (std::exchange(is_plus_open_, false) && !is_literal) append("+", false);
    // Between two literals the "+" of VBScript joins them.
    is_plus_open_ = after_literal_ && depth_ == 0 && read.language == Language::kVbScript && bytes == "+";
    after_literal_ = is_literal;
    if (is_plus_open_) return;
    if (read.is_between) return between(read, bytes);
    if (is_literal) return literal(token, bytes);
    if (bytes == text_operator_of(read.language).substr(1, 1)) return text(bytes);
    if (is_one_of(token, bytes, "([{")) ++depth_;
    if (is_one_of(token, bytes, ")]}") && depth_ > 0) --depth_;
    // In a text of PHP two inserted values may be adjacent.
    const bool is_value = token.kind == TokenKind::kName && bytes.starts_with("$");
    if (is_value && after_value_ && depth_ == 1) operands_.emplace_back();
    after_value_ = is_value;
    // An inserted value of PHP is one token without braces, and three with braces.
    const std::size_t arrow = token.kind == TokenKind::kName ? bytes.find("->") : bytes.npos;
    if (arrow == bytes.npos) return append(bytes, false);
    const std::size_t name_end = arrow - (arrow > 0 && bytes[arrow - 1] == '?' ? 1 : 0);
    append(bytes.substr(0, name_end), false);
    append(bytes.substr(name_end, arrow + 2 - name_end), false);
    append(bytes.substr(arrow + 2), false);
  }

  // Each operand as its tokens, with a line end after each token. An operand that contains segments has changed, so
  // then each token that is not text counts separately.
  std::vector<std::string> sorted(bool holds_segments) const {
    std::vector<std::string> result;
    for (const std::vector<Part>& operand : operands_) {
      if (!holds_segments && !operand.empty()) result.emplace_back();
      for (const Part& part : operand) {
        if (!holds_segments)
          result.back() += part.bytes;
        else if (!part.is_text)
          result.push_back(part.bytes);
      }
    }
    std::ranges::sort(result);
    return result;
  }

 private:
  struct Part {
    std::string bytes;
    bool is_text = false;  // the last token was a literal, or joins two
  };
  // What a value stands in.
  struct Outer {
    std::size_t depth = 0;
    bool is_literal = false;
  };

  // Takes the delimiters of a server block in a client script. Such a block is an operand, or a part of one.
  void between(const ScriptReader::Read& read, std::string_view bytes) {
    if (read.leaves_block)
      leave_block();
    else if (!outer_.empty() && outer_.back().is_literal && outer_.back().depth == 0)
      begin_operand();  // a text need not stand between it and the block before
    append(bytes, false);
    if (read.enters_block) enter(false);
  }

  // A value that interrupts a literal is also an operand.
  void literal(const Token& token, std::string_view bytes) {
    if (!token.begins) leave();
    text(bytes);
    if (!token.ends) enter(true);
  }

  // Brackets that are not closed in a value do not reach beyond it.
  void enter(bool is_literal) { outer_.push_back({depth_++, is_literal}); }
  void leave() {
    if (outer_.empty()) return;
    depth_ = outer_.back().depth;
    outer_.pop_back();
  }
  // A literal that the block does not end does not reach beyond it, either.
  void leave_block() {
    while (!outer_.empty() && outer_.back().is_literal) outer_.pop_back();
    leave();
  }

  // Takes a text, which is between operands or in one.
  void text(std::string_view bytes) {
    if (depth_ != 0) return append(bytes, true);
    begin_operand();
  }

  void begin_operand() {
    if (!operands_.back().empty()) operands_.emplace_back();
  }

  void append(std::string_view bytes, bool is_text) {
    operands_.back().push_back({"", is_text});
    append_decoded(bytes, coding_, operands_.back().back().bytes);
    operands_.back().back().bytes += '\n';
  }

  const TextCoding& coding_;
  std::size_t depth_ = 0;
  std::vector<Outer> outer_;
  bool after_value_ = false;
  bool after_literal_ = false;
  bool is_plus_open_ = false;  // a "+" behind a literal
  std::vector<std::vector<Part>> operands_{1};
};

ScriptProof::ScriptProof(Language server, const TextCoding& source, const TextCoding& target)
    : source_(&Change::source, server, source), target_(&Change::target, server, target) {}

void ScriptProof::Side::begin(std::size_t from, std::size_t to) {
  // Skips the line of the marker and the line ends around the block.
  from = std::min(text.find_first_of("\r\n", from), to);
  while (from < to && ends_line(text[from])) ++from;
  while (to > from && ends_line(text[to - 1])) --to;
  block = from;
  reader.begin(bytes(from, to));
}

void ScriptProof::add(const WrittenPart& part) {
  const std::size_t source_begin = source_.text.size();
  const std::size_t target_begin = target_.text.size();
  source_.text += part.original;
  target_.text += part.written;
  if (part.hole != nullptr && part.original != part.written) {
    Change change;
    change.place.number = part.hole->number;
    change.place.line = part.hole->line;
    change.place.column = part.hole->column;
    change.holds_segments = part.holds_segments;
    change.source = {source_begin, source_.text.size()};
    change.target = {target_begin, target_.text.size()};
    changes_.push_back(std::move(change));
  }
  prove_blocks(false);
}

// Proves every complete block. A block is complete when the next marker has come. Bytes before the first marker are not
// script.
void ScriptProof::prove_blocks(bool is_end) {
  std::size_t source_begin = 0;
  std::size_t target_begin = 0;
  std::size_t change = 0;
  for (;;) {
    const std::size_t next = html::placeholder::find_marker_line(source_.text, std::max(searched_, source_begin + 1));
    if (next >= source_.text.size() && !is_end) {
      // The text may end inside a marker.
      searched_ = std::max(source_begin,
                           next > html::placeholder::kMarker.size() ? next - html::placeholder::kMarker.size() : 0);
      break;
    }
    const std::size_t target_next = html::placeholder::find_marker_line(target_.text, target_begin + 1);
    std::size_t behind = change;
    while (behind < changes_.size() && changes_[behind].source.begin < next) ++behind;
    // Only a translation can have brought in another marker.
    const bool is_last = next >= source_.text.size();
    if (is_last != (target_next >= target_.text.size()) && !changes_.empty())
      refuse(behind - (behind > change ? 1 : 0));
    if (source_.bytes(source_begin, next).starts_with(html::placeholder::kMarker))
      prove_block({source_begin, next}, {target_begin, target_next}, {change, behind});
    source_begin = searched_ = next;
    target_begin = target_next;
    change = behind;
    if (is_last) break;
  }
  source_begin = std::min(source_begin, source_.text.size());
  target_begin = std::min(target_begin, target_.text.size());
  source_.text.erase(0, source_begin);
  target_.text.erase(0, target_begin);
  searched_ -= std::min(searched_, source_begin);
  changes_.erase(changes_.begin(), changes_.begin() + static_cast<std::ptrdiff_t>(change));
  for (Change& later : changes_) {
    later.source = {later.source.begin - source_begin, later.source.end - source_begin};
    later.target = {later.target.begin - target_begin, later.target.end - target_begin};
  }
}

void ScriptProof::prove_block(Range source, Range target, Range changes) {
  source_.begin(source.begin, source.end);
  target_.begin(target.begin, target.end);
  std::size_t change = changes.begin;
  // A difference is attributed to the last translation before it.
  const auto expect = [&](bool holds) {
    if (!holds) refuse(change > changes.begin ? change - 1 : change);
  };
  source_.next();
  target_.next();
  while (source_.has || target_.has) {
    expect(source_.has && target_.has);
    if (change < changes.end && source_.token_end() >= changes_[change].source.begin) {
      change = prove_expression({change, changes.end});
      continue;
    }
    expect(source_.read.token.kind == target_.read.token.kind && is_same(source_.token(), target_.token()));
    source_.next();
    target_.next();
  }
  expect(change == changes.end);
}

// Returns the index of the first change that is not in the same expression as the first of `changes`.
std::size_t ScriptProof::prove_expression(Range changes) {
  Operands old_operands(source_.coding);
  Operands new_operands(target_.coding);
  const Expression before = read_expression(source_, changes, old_operands);
  const Expression after = read_expression(target_, changes, new_operands);
  const Change& first = changes_[changes.begin];
  const Change& last = changes_[before.last_change];
  const auto expect = [&](bool holds) {
    if (!holds) refuse(before.last_change);
  };
  const auto is_like = [](const ScriptReader::Read& a, const ScriptReader::Read& b) {
    return a.is_between == b.is_between && a.token.kind == b.token.kind;
  };
  expect(before.last_change == after.last_change && is_like(before.first, after.first) &&
         is_like(before.last, after.last));
  expect(after.place.begin <= first.target.begin && after.place.end >= last.target.end);
  expect(is_same(source_.bytes(before.place.begin, first.source.begin),
                 target_.bytes(after.place.begin, first.target.begin)) &&
         is_same(source_.bytes(last.source.end, before.place.end), target_.bytes(last.target.end, after.place.end)));
  const std::string_view old_bytes = source_.bytes(before.place.begin, before.place.end);
  const std::string_view new_bytes = target_.bytes(after.place.begin, after.place.end);
  const auto brings = [&](std::string_view what) { return count(new_bytes, what) > count(old_bytes, what); };
  expect(std::ranges::none_of(kDelimiters, brings));
  expect(!before.first.in_element || std::ranges::none_of(kDelimitersInElement, brings));
  std::vector<std::string> lost;
  std::vector<std::string> added;
  const bool holds_segments =
      std::any_of(&first, &last + 1, [](const Change& change) { return change.holds_segments; });
  const std::vector<std::string> expected = old_operands.sorted(holds_segments);
  const std::vector<std::string> given = new_operands.sorted(holds_segments);
  std::ranges::set_difference(expected, given, std::back_inserter(lost));
  std::ranges::set_difference(given, expected, std::back_inserter(added));
  expect(lost.empty() && std::ranges::all_of(added, holds_segments ? is_token_of_escape : is_escape));
  return before.last_change + 1;
}

ScriptProof::Expression ScriptProof::read_expression(Side& side, Range changes, Operands& operands) const {
  Expression expression;
  if (!side.has) refuse(changes.begin);
  expression.place = {side.token_begin(), side.token_end()};
  expression.first = side.read;
  expression.last_change = changes.begin;
  const auto range = [&](std::size_t change) { return changes_[change].*side.range; };
  for (; side.has && side.token_begin() <= range(expression.last_change).end; side.next()) {
    operands.add(side.read, side.token());
    expression.place.end = side.token_end();
    expression.last = side.read;
    while (expression.last_change + 1 < changes.end && range(expression.last_change + 1).begin <= expression.place.end)
      ++expression.last_change;
  }
  return expression;
}

bool ScriptProof::is_same(std::string_view source, std::string_view target) const {
  if (source_.coding.number() == target_.coding.number()) return source == target;
  std::string source_text;
  std::string target_text;
  append_decoded(source, source_.coding, source_text);
  append_decoded(target, target_.coding, target_text);
  return source_text == target_text;
}

void ScriptProof::refuse(std::size_t change) const {
  throw failure(FailureNumber::kInvalidCall,
                (change < changes_.size() ? place_of(changes_[change].place) + u": " : std::u16string()) +
                    u"the translation would change the script around it");
}

}  // namespace kavo::script
