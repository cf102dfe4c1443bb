#include "suite/filters/script/script_proof.h"

#include <algorithm>

#include "formats/html/script_marker.h"
#include "formats/script/literal_value.h"
#include "platform/failure.h"

namespace kavo::script {
namespace {

// The first line from `from` on that begins as a marker does; the size of the text when there is none.
std::size_t find_marker(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find(html::placeholder::kMarker, from); at != std::string_view::npos;
       at = text.find(html::placeholder::kMarker, at + 1))
    if (at == 0 || ends_line(text[at - 1])) return at;
  return text.size();
}

void append_decoded(std::string_view bytes, const TextCoding& coding, std::string& utf8) {
  while (!bytes.empty()) {
    bytes.remove_prefix(coding.decode_run(bytes, utf8));
    if (bytes.empty()) return;
    bool is_valid = false;
    const std::size_t length = coding.decode_one(bytes, utf8, is_valid);
    if (!is_valid) utf8 += bytes.substr(0, length);
    bytes.remove_prefix(length);
  }
}

// What stands for a character that no literal of the language can hold: "vbCrLf", "ChrW(233)".
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

// What begins or ends a script whatever stands around it.
constexpr std::string_view kDelimiters[] = {"<%", "%>", "<?", "?>"};
constexpr std::string_view kDelimitersInElement[] = {"</script", "</java", "<!--"};

bool is_one_of(const Token& token, std::string_view bytes, std::string_view brackets) {
  return token.kind == TokenKind::kOperator && bytes.size() == 1 && brackets.find(bytes[0]) != std::string_view::npos;
}

// The operands of an expression that joins texts, each as its tokens with a line end behind each.
class Operands {
 public:
  // Where segments stand in operands, those are no longer the same: then each token counts for itself.
  Operands(const TextCoding& coding, bool holds_segments) : coding_(coding), is_loose_(holds_segments) {}

  void add(const ScriptReader::Read& read, std::string_view bytes) {
    const Token& token = read.token;
    if (read.is_between) return between(read, bytes);
    if (token.kind == TokenKind::kBlank || token.kind == TokenKind::kLineEnd || token.kind == TokenKind::kComment)
      return;
    if (token.kind == TokenKind::kLiteral) return literal(token, bytes);
    if ((depth_ == 0 || is_loose_) && bytes == text_operator_of(read.language).substr(1, 1)) return flush();
    if (is_one_of(token, bytes, "([{")) ++depth_;
    if (is_one_of(token, bytes, ")]}") && depth_ > 0) --depth_;
    append(bytes);
  }

  std::vector<std::string> sorted() {
    flush();
    std::sort(operands_.begin(), operands_.end());
    return std::move(operands_);
  }

 private:
  // The delimiters of a server block in a client script, which is an operand or a part of one.
  void between(const ScriptReader::Read& read, std::string_view bytes) {
    if (read.leaves_block && depth_ > 0) --depth_;
    append(bytes);
    if (read.enters_block) ++depth_;
  }

  // A value that interrupts a literal is an operand, too.
  void literal(const Token& token, std::string_view bytes) {
    if (!token.begins && depth_ > 0) --depth_;
    if (depth_ == 0 || is_loose_)
      flush();
    else
      append(bytes);
    if (!token.ends) ++depth_;
  }

  void append(std::string_view bytes) {
    append_decoded(bytes, coding_, current_);
    current_ += '\n';
    if (is_loose_) flush();
  }
  void flush() {
    if (!current_.empty()) operands_.push_back(std::move(current_));
    current_.clear();
  }

  const TextCoding& coding_;
  bool is_loose_;
  std::size_t depth_ = 0;
  std::string current_;
  std::vector<std::string> operands_;
};

}  // namespace

ScriptProof::ScriptProof(Language server, const TextCoding& source, const TextCoding& target)
    : source_(server, source), target_(server, target) {}

void ScriptProof::Side::begin(std::size_t from, std::size_t to) {
  // Without the line of the marker and the line ends around the block.
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
    change.source_begin = source_begin;
    change.source_end = source_.text.size();
    change.target_begin = target_begin;
    change.target_end = target_.text.size();
    changes_.push_back(std::move(change));
  }
  prove_blocks(false);
}

// Proves what is complete: a block is when the marker of the next one has come. What stands before the first marker is
// no script.
void ScriptProof::prove_blocks(bool is_end) {
  std::size_t source_begin = 0;
  std::size_t target_begin = 0;
  std::size_t change = 0;
  for (;;) {
    const std::size_t next = find_marker(source_.text, std::max(searched_, source_begin + 1));
    if (next >= source_.text.size() && !is_end) {
      // A marker may be cut.
      searched_ = std::max(source_begin,
                           next > html::placeholder::kMarker.size() ? next - html::placeholder::kMarker.size() : 0);
      break;
    }
    const std::size_t target_next = find_marker(target_.text, target_begin + 1);
    std::size_t behind = change;
    while (behind < changes_.size() && changes_[behind].source_begin < next) ++behind;
    // Only a translation can bring a marker along.
    const bool is_last = next >= source_.text.size();
    if (is_last != (target_next >= target_.text.size()) && !changes_.empty())
      refuse(behind - (behind > change ? 1 : 0));
    if (source_.bytes(source_begin, next).starts_with(html::placeholder::kMarker))
      prove_block(source_begin, next, target_begin, target_next, change, behind);
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
    later.source_begin -= source_begin;
    later.source_end -= source_begin;
    later.target_begin -= target_begin;
    later.target_end -= target_begin;
  }
}

void ScriptProof::prove_block(std::size_t source_begin, std::size_t source_end, std::size_t target_begin,
                              std::size_t target_end, std::size_t change, std::size_t last_change) {
  source_.begin(source_begin, source_end);
  target_.begin(target_begin, target_end);
  const std::size_t first = change;
  // What is not as it was is the work of the last translation before it.
  const auto expect = [&](bool holds) {
    if (!holds) refuse(change > first ? change - 1 : first);
  };
  source_.next();
  target_.next();
  while (source_.has || target_.has) {
    expect(source_.has && target_.has);
    if (change < last_change && source_.token_end() >= changes_[change].source_begin) {
      prove_expression(change, last_change);
      continue;
    }
    expect(source_.read.token.kind == target_.read.token.kind && is_same(source_.token(), target_.token()));
    source_.next();
    target_.next();
  }
  expect(change == last_change);
}

// The tokens that a translation touches, in both files: `change` is the first that stands in them, afterwards the first
// that does not. A literal may hold several.
void ScriptProof::prove_expression(std::size_t& change, std::size_t last_change) {
  const std::size_t first = change;
  const Change& begins = changes_[first];
  const std::size_t source_begin = source_.token_begin();
  const std::size_t target_begin = target_.token_begin();
  const bool in_element = source_.read.in_element;
  const auto is_like = [](const ScriptReader::Read& a, const ScriptReader::Read& b) {
    return a.is_between == b.is_between && a.token.kind == b.token.kind;
  };
  if (!is_like(source_.read, target_.read) || target_begin > begins.target_begin ||
      target_.token_end() < begins.target_begin ||
      !is_same(source_.bytes(source_begin, begins.source_begin), target_.bytes(target_begin, begins.target_begin)))
    refuse(first);
  bool holds_segments = false;
  std::size_t source_end = 0;
  std::size_t last = first;
  ScriptReader::Read last_read;
  for (std::size_t i = first; i < last_change; ++i) holds_segments = holds_segments || changes_[i].holds_segments;
  Operands operands(source_.coding, holds_segments);
  for (; source_.has && source_.token_begin() <= changes_[last].source_end; source_.next()) {
    operands.add(source_.read, source_.token());
    source_end = source_.token_end();
    last_read = source_.read;
    while (last + 1 < last_change && changes_[last + 1].source_begin <= source_end) ++last;
  }
  Operands found(target_.coding, holds_segments);
  std::size_t target_end = 0;
  bool ends_alike = false;
  for (; target_.has && target_.token_begin() <= changes_[last].target_end; target_.next()) {
    found.add(target_.read, target_.token());
    target_end = target_.token_end();
    ends_alike = is_like(last_read, target_.read);
  }
  const Change& ends = changes_[last];
  change = last + 1;
  if (!ends_alike || source_end < ends.source_end || target_end < ends.target_end ||
      !is_same(source_.bytes(ends.source_end, source_end), target_.bytes(ends.target_end, target_end)))
    refuse(last);
  const std::string_view before = source_.bytes(source_begin, source_end);
  const std::string_view after = target_.bytes(target_begin, target_end);
  const auto brings = [&](std::string_view what) { return count(after, what) > count(before, what); };
  if (std::ranges::any_of(kDelimiters, brings) || (in_element && std::ranges::any_of(kDelimitersInElement, brings)))
    refuse(last);
  const std::vector<std::string> expected = operands.sorted();
  const std::vector<std::string> given = found.sorted();
  std::vector<std::string> lost;
  std::vector<std::string> added;
  std::ranges::set_difference(expected, given, std::back_inserter(lost));
  std::ranges::set_difference(given, expected, std::back_inserter(added));
  if (!lost.empty() || !std::ranges::all_of(added, holds_segments ? is_token_of_escape : is_escape)) refuse(last);
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
