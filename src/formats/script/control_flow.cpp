// Only the depth of nesting is counted. When the depth falls below zero in a block, the block ends a construct of an
// earlier block. When it is above zero at the end, a later block ends the construct.
#include "formats/script/control_flow.h"

#include <algorithm>
#include <memory>

#include "formats/script/lexer.h"

namespace kavo::script {
namespace {

template <std::size_t kSize>
bool is_one_of(std::string_view word, const std::string_view (&words)[kSize]) {
  return std::any_of(std::begin(words), std::end(words), [&](std::string_view row) { return equal_word(word, row); });
}

bool is_blank_token(const Token& token) { return token.kind == TokenKind::kBlank || token.kind == TokenKind::kComment; }

void close(Flow& flow) {
  if (flow.opens != 0)
    --flow.opens;
  else
    ++flow.closes;
}

// Reads VBScript statement by statement. A line end or a ":" ends a statement.
class BasicFlow {
 public:
  void token(const Token& token, std::string_view word) {
    if (is_blank_token(token)) return;
    if (token.kind == TokenKind::kLineEnd || word == ":") {
      // "If a Then b : c" is one statement, up to the end of its line.
      if (token.kind == TokenKind::kLineEnd || !is_if_ || last_is_then_) end_statement();
      return;
    }
    if (is_first_) first(word);
    if (!is_first_ && is_end_) closes_ = closes_ || is_one_of(word, kEnded);
    last_is_then_ = equal_word(word, "then");
    is_first_ = is_first_ && is_one_of(word, kBefore);
  }
  Flow flow() {
    end_statement();
    return flow_;
  }

 private:
  static constexpr std::string_view kBefore[] = {"public", "private", "default"};
  static constexpr std::string_view kOpening[] = {"for",      "do",    "while", "select",  "sub",
                                                  "function", "class", "with",  "property"};
  static constexpr std::string_view kClosing[] = {"next", "loop", "wend"};
  static constexpr std::string_view kBetween[] = {"else", "elseif", "case"};
  static constexpr std::string_view kEnded[] = {"if", "select", "sub", "function", "class", "with", "property"};

  void first(std::string_view word) {
    is_if_ = equal_word(word, "if");
    is_end_ = equal_word(word, "end");
    opens_ = is_one_of(word, kOpening);
    closes_ = is_one_of(word, kClosing);
    if (flow_.opens == 0 && is_one_of(word, kBetween)) flow_.parts = true;
  }
  void end_statement() {
    if (opens_ || (is_if_ && last_is_then_)) ++flow_.opens;
    if (closes_) close(flow_);
    opens_ = closes_ = is_if_ = is_end_ = last_is_then_ = false;
    is_first_ = true;
  }

  Flow flow_;
  bool is_first_ = true;
  bool is_if_ = false;
  bool is_end_ = false;
  bool opens_ = false;
  bool closes_ = false;
  bool last_is_then_ = false;
};

// Counts braces, the words that PHP has for them ("if:", "endif"), and statements that end after the block.
class BraceFlow {
 public:
  void token(const Token& token, std::string_view word) {
    if (is_blank_token(token) || token.kind == TokenKind::kLineEnd || token.kind == TokenKind::kBlockEnd) return;
    is_colon_ = word == ":";
    if (token.kind == TokenKind::kOperator && word == "{") ++flow_.opens;
    if (token.kind == TokenKind::kOperator && word == "}") close(flow_);
    if (token.kind == TokenKind::kName && starts_) {
      if (is_one_of(word, kEnding)) close(flow_);
      // "} else {" ends one construct and begins another one.
      if (flow_.opens == 0 && !after_close_ && is_one_of(word, kBetween)) flow_.parts = true;
      is_head_ = is_one_of(word, kHead);
      begins_ = is_head_ && !is_one_of(word, kBetween);
    }
    after_close_ = token.kind == TokenKind::kOperator && word == "}";
    starts_ = token.kind == TokenKind::kOperator && (word == ";" || word == "{" || word == "}");
    if (starts_) is_head_ = false;
  }
  // "if ($a):" is open until "endif". When a head has no body, its statement is the page up to the next block.
  Flow flow() const {
    Flow flow = flow_;
    if (is_head_ && begins_ && is_colon_)
      ++flow.opens;
    else if (is_head_)
      flow.parts = true;
    return flow;
  }

 private:
  static constexpr std::string_view kHead[] = {"if", "else", "elseif", "for", "foreach", "while", "do", "switch"};
  static constexpr std::string_view kBetween[] = {"else", "elseif", "case", "default"};
  static constexpr std::string_view kEnding[] = {"endif", "endforeach", "endfor", "endwhile", "endswitch"};

  Flow flow_;
  bool starts_ = true;    // the next word begins a statement
  bool is_head_ = false;  // in the head of a construct, or in its single statement
  bool begins_ = false;   // that construct is not the next branch of an open one
  bool is_colon_ = false;
  bool after_close_ = false;
};

template <class Reader>
Flow read_flow(Lexer& lexer, std::string_view code) {
  Reader reader;
  bool is_ended = false;
  lexer.begin(code);
  for (Token token; lexer.next(token);) {
    reader.token(token, code.substr(token.begin, token.size()));
    is_ended = is_ended || token.kind == TokenKind::kBlockEnd;
  }
  Flow flow = reader.flow();
  flow.goes_on = !is_ended;
  return flow;
}

}  // namespace

Flow flow_of(std::string_view block, const Piece& piece) {
  const bool may_divide = piece.kind == PieceKind::kStatements && piece.element == 0;
  const std::string_view closer = block.substr(piece.end);
  const bool may_go_on = piece.language == Language::kPhp && (closer.empty() || closer == "?>");
  if (piece.language == Language::kUnknown || (!may_divide && !may_go_on)) return {};
  // The "?>" of PHP may stand in a literal or a comment.
  const std::string_view code = block.substr(piece.begin, may_go_on ? block.npos : piece.end - piece.begin);
  const std::unique_ptr<Lexer> lexer = make_lexer(piece.language, nullptr);
  Flow flow =
      piece.language == Language::kVbScript ? read_flow<BasicFlow>(*lexer, code) : read_flow<BraceFlow>(*lexer, code);
  flow.goes_on = flow.goes_on && may_go_on;
  if (may_divide) return flow;
  return {.goes_on = flow.goes_on};
}

}  // namespace kavo::script
