#include "suite/filters/script/script_writing.h"

#include <algorithm>

#include "formats/script/lexer.h"
#include "formats/script/page_scripts.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/html/typed_bracket.h"

namespace kavo::script {
namespace {

// The delimiters of a literal that stands alone.
struct Delimiters {
  std::string_view open;
  std::string_view close;
};
Delimiters delimiters_of(LiteralForm form) {
  switch (form) {
    case LiteralForm::kTextBlock:
      return {"\"\"\"", "\"\"\""};
    case LiteralForm::kHeredoc:
      return {"<<<KAVO\n", "\nKAVO"};
    case LiteralForm::kNowdoc:
      return {"<<<'KAVO'\n", "\nKAVO"};
    default:
      return {quote_of(form), quote_of(form)};
  }
}

// Where the "$name" or "$name->member" of PHP begins that ends `code`, or npos. A letter after it would become part of
// the name.
std::size_t last_inserted_name(std::string_view code) {
  const std::size_t begin = code.rfind('$');
  if (begin == std::string_view::npos || (begin > 0 && (code[begin - 1] == '{' || code[begin - 1] == '$')))
    return std::string_view::npos;
  std::string_view rest = code.substr(begin + 1);
  if (const std::size_t arrow = rest.find("->"); arrow != std::string_view::npos) rest.remove_prefix(arrow + 2);
  return !rest.empty() && std::all_of(rest.begin(), rest.end(), is_name_byte) ? begin : std::string_view::npos;
}

}  // namespace

ScriptWriting::ScriptWriting(const Hole& hole, const TextCoding& coding)
    : hole_(hole), coding_(coding), place_(place_from(hole.context)), form_(place_.first) {
  if (place_.codes.size() != hole.codes.size()) refuse(u"the skeleton is damaged");
}

void ScriptWriting::refuse(std::u16string_view reason) const {
  throw failure(FailureNumber::kInvalidCall, place_of(hole_) + u": " + std::u16string(reason));
}

std::string_view ScriptWriting::bytes_of(const Hole::Code& code) const {
  return std::string_view(hole_.original).substr(code.begin, code.end - code.begin);
}

const SegmentPlace::Code& ScriptWriting::place_of_code(const Hole::Code& code) const {
  return place_.codes[static_cast<std::size_t>(&code - hole_.codes.data())];
}

void ScriptWriting::write(std::string_view translation, std::string& bytes) {
  std::vector<Part> parts;
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) parts.push_back({part.text, part.is_code ? hole_.find(part) : nullptr});
  check_order(parts);

  std::string result;
  const bool adds_quotes = place_.is_attribute && place_.quote == 0;
  if (adds_quotes) append_literal_text("\"", place_.quoting(form_), coding_, result);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const Part* const next = i + 1 < parts.size() ? &parts[i + 1] : nullptr;
    if (parts[i].code != nullptr)
      code(parts[i], next, result);
    else
      text(parts[i].text, next != nullptr && bytes_of(*next->code).starts_with("$"), result);
  }
  if (adds_quotes) append_literal_text("\"", place_.quoting(form_), coding_, result);
  go_to(place_.last, result);

  // The whole must consist of the same tokens as its parts.
  std::string tokens;
  const bool is_whole = add_tokens(place_.first, result, place_.last, server_blocks_, tokens);
  if (!is_whole || tokens != expected_) refuse(u"the translation would change the script around it");
  bytes += result;
}

// Refuses a translation that changes the order of values on which the script's operators depend.
void ScriptWriting::check_order(const std::vector<Part>& parts) const {
  const Hole::Code* last = nullptr;
  for (const Part& part : parts) {
    if (part.code == nullptr || !place_of_code(*part.code).is_ordered) continue;
    if (last != nullptr && part.code < last)
      refuse(u"its values cannot change places: the script adds some of them up before they become text");
    last = part.code;
  }
}

void ScriptWriting::text(std::string_view run, bool before_name, std::string& bytes) {
  const std::string written = place_.has_markup ? in_markup(run)
                              : place_.in_page  ? without_tags(run)
                                                : std::string(run);
  std::string part;
  try {
    append_literal_text(written, place_.quoting(form_), coding_, part);
  } catch (const failure& reason) {
    refuse(reason.description());
  }
  // "{" in front of "$name" would mean something else.
  if (before_name && place_.language == Language::kPhp && part.ends_with("{"))
    part.replace(part.size() - 1, 1, "\\x7b");
  add_tokens(form_, part, form_, {}, expected_);
  bytes += part;
}

// Writes characters that have a meaning in a page, or that its coding lacks, as references.
std::string ScriptWriting::in_markup(std::string_view text) const {
  std::string result;
  while (!text.empty()) {
    const std::string_view rest = text;
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    const std::string_view character = text.substr(0, length);
    text.remove_prefix(length);
    bool is_missing = false;
    std::string ignored;
    coding_.encode(character, ignored, [&](std::string_view, std::string&) { is_missing = true; });
    if (character == "&")
      result += "&amp;";
    else if (character == "<")
      result += html::reference_to_bracket(rest);
    else if (character == ">")
      result += "&gt;";
    else if (character == "\"" && place_.is_attribute && place_.quote != '\'')
      result += "&quot;";
    else if (character == "'" && place_.is_attribute && place_.quote == '\'')
      result += "&#39;";
    else if (character == "\u00A0")
      result += "&nbsp;";
    else if (is_missing)
      result += "&#" + std::to_string(static_cast<std::uint32_t>(utf8_code_point(character))) + ";";
    else
      result += character;
  }
  return result;
}

// What looks like a tag, or becomes one with the value behind it, is still text. In an element the language's own
// escape keeps an end tag from ending it.
std::string ScriptWriting::without_tags(std::string_view text) const {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char next = at + 1 < text.size() ? text[at + 1] : '/';
    const bool begins_tag = is_letter(next) || next == '!' || next == '?' || (next == '/' && !place_.in_element);
    if (text[at] == '<' && begins_tag)
      result += html::reference_to_bracket(text.substr(at));
    else
      result += text[at];
  }
  return result;
}

void ScriptWriting::code(const Part& part, const Part* next, std::string& bytes) {
  const SegmentPlace::Code& place = place_of_code(*part.code);
  go_to(place.before, bytes);
  std::string code(bytes_of(*part.code));
  const std::size_t name = place_.language == Language::kPhp ? last_inserted_name(code) : std::string_view::npos;
  if (name != std::string_view::npos && next != nullptr && next->code == nullptr) {
    const char c = next->text.empty() ? '\0' : next->text.front();
    if (is_name_byte(c) || c == '[' || next->text.starts_with("->"))
      code = code.substr(0, name) + "{" + code.substr(name) + "}";
  }
  const std::vector<ServerBlock> blocks = server_blocks_in(code);
  add_tokens(place.before, code, place.after, blocks, expected_);
  for (const ServerBlock& block : blocks)
    server_blocks_.push_back({bytes.size() + block.begin, bytes.size() + block.end});
  if (code == bytes_of(*part.code))
    written_codes_.push_back(
        {static_cast<std::size_t>(part.code - hole_.codes.data()), bytes.size(), bytes.size() + code.size()});
  bytes += code;
  form_ = place.after;
}

// Ends the literal and begins one of another form.
void ScriptWriting::go_to(LiteralForm form, std::string& bytes) {
  if (form_ == form) return;
  const std::string_view close = quote_of(form_);
  const std::string_view open = quote_of(form);
  if (close.empty() || open.empty()) refuse(u"a value cannot be in a literal of another kind");
  bytes += close;
  bytes += text_operator_of(place_.language);
  bytes += open;
  form_ = form;
}

// Only a client's script has server blocks in it. (PHP in a page counts as in an element, too.) What has no end is no
// block, but characters of a literal.
std::vector<ScriptWriting::ServerBlock> ScriptWriting::server_blocks_in(std::string_view code) const {
  std::vector<ServerBlock> blocks;
  if (!place_.in_element || place_.language == Language::kPhp) return blocks;
  for (std::size_t begin = find_server_block(code, 0); begin < code.size();) {
    const std::size_t end = server_block_end(code, begin);
    if (code.substr(begin + 2, end - begin - 2).ends_with(code[begin + 1] == '%' ? "%>" : "?>"))
      blocks.push_back({begin, end});
    begin = find_server_block(code, end);
  }
  return blocks;
}

// Adds the tokens outside of literals, except the operators that join texts. Returns true when the bytes end with the
// literal that they are in.
bool ScriptWriting::add_tokens(LiteralForm before, std::string_view bytes, LiteralForm after,
                               std::span<const ServerBlock> server_blocks, std::string& tokens) const {
  const std::string_view open = delimiters_of(before).open;
  std::string literal(open);
  literal += bytes;
  literal += delimiters_of(after).close;
  const std::unique_ptr<Lexer> lexer = make_lexer(place_.language, &coding_);
  if (!lexer) refuse(u"the skeleton is damaged");
  const std::string_view joint = text_operator_of(place_.language).substr(1, 1);
  bool is_whole = true;
  const auto add_piece = [&](std::string_view piece, Between between) {
    lexer->begin(piece, between);
    for (Token token; lexer->next(token);) {
      const std::string_view text = piece.substr(token.begin, token.size());
      is_whole = token.kind == TokenKind::kLiteral && token.ends;
      if (token.kind == TokenKind::kBlockEnd || token.kind == TokenKind::kUnknown)
        refuse(u"the translation would end the script");
      if (token.kind == TokenKind::kBlank || token.kind == TokenKind::kLineEnd || token.kind == TokenKind::kLiteral ||
          token.kind == TokenKind::kComment || text == joint)
        continue;
      tokens += text;
      tokens += '\n';
    }
  };
  const std::string_view whole = literal;
  std::size_t done = 0;
  for (const ServerBlock& block : server_blocks) {
    add_piece(whole.substr(done, open.size() + block.begin - done), done == 0 ? Between::kPage : Between::kValue);
    done = open.size() + block.end;
  }
  add_piece(whole.substr(done), done == 0 ? Between::kPage : Between::kValue);
  return is_whole;
}

}  // namespace kavo::script
