#include "formats/html/script_charset.h"

#include <array>

#include "formats/script/language.h"
#include "formats/script/script_reader.h"

namespace kavo::html {
namespace {

using script::equal_word;

bool is_label_byte(char c) { return script::is_letter(c) || script::is_digit(c) || c == '-' || c == '_'; }

// The value of the charset parameter: "utf-8" in "text/html; charset=utf-8".
std::string_view charset_parameter(std::string_view text) {
  constexpr std::string_view kName = "charset";
  for (std::size_t at = 0; at + kName.size() < text.size(); ++at) {
    if (!equal_word(text.substr(at, kName.size()), kName)) continue;
    std::size_t begin = at + kName.size();
    while (begin < text.size() && (text[begin] == ' ' || text[begin] == '=')) ++begin;
    std::size_t end = begin;
    while (end < text.size() && is_label_byte(text[end])) ++end;
    return text.substr(begin, end - begin);
  }
  return {};
}

void add(CharsetSource source, std::string_view label, std::vector<CharsetDeclaration>& found) {
  if (!label.empty()) found.push_back({source, std::string(label)});
}

void read_directive(std::string_view directive, std::vector<CharsetDeclaration>& found) {
  for (const std::string_view name : {"codepage", "pageencoding"})
    if (const auto value = script::attribute_of(directive, name)) add(CharsetSource::kDirective, *value, found);
  if (const auto value = script::attribute_of(directive, "contenttype"))
    add(CharsetSource::kContentType, charset_parameter(*value), found);
}

// Reads the tokens of a block. The last four before a value say what the value is for.
class Statements {
 public:
  explicit Statements(std::vector<CharsetDeclaration>& found) : found_(found) {}

  void add_token(const script::Token& token, std::string_view text) {
    using script::TokenKind;
    if (token.kind == TokenKind::kBlank || token.kind == TokenKind::kLineEnd || token.kind == TokenKind::kComment)
      return;
    if (token.kind == TokenKind::kLiteral)
      value(text.substr(token.open, text.size() - token.open - token.close));
    else if (token.kind == TokenKind::kNumber)
      value(text);
    for (std::size_t i = last_.size() - 1; i > 0; --i) last_[i] = last_[i - 1];
    last_[0] = text;
  }

 private:
  bool is(std::size_t back, std::string_view word) const { return equal_word(last_[back], word); }

  void value(std::string_view text) {
    const bool is_called = is(0, "(");
    const bool is_assigned = is(0, "=");
    const bool of_response = is(2, ".") && is(3, "response");
    if (is_assigned && is(1, "encoding") && is(2, "(") && is(3, "declare"))
      add(CharsetSource::kDirective, text, found_);
    else if (is_assigned && is(1, "codepage") && is(2, "."))
      add(CharsetSource::kResponseCharset, text, found_);
    else if (of_response && (is_assigned || is_called) && (is(1, "charset") || is(1, "setcharacterencoding")))
      add(CharsetSource::kResponseCharset, text, found_);
    else if (is_called && (is(1, "header") || is(1, "setcontenttype")))
      add(CharsetSource::kHeader, charset_parameter(text), found_);
    else if (is_assigned && of_response && is(1, "contenttype"))
      add(CharsetSource::kHeader, charset_parameter(text), found_);
  }

  std::vector<CharsetDeclaration>& found_;
  std::array<std::string_view, 4> last_;
};

}  // namespace

bool is_script_source(CharsetSource source) {
  return source == CharsetSource::kDirective || source == CharsetSource::kContentType ||
         source == CharsetSource::kResponseCharset || source == CharsetSource::kHeader;
}

void add_script_declarations(std::string_view page, script::Language server, std::vector<CharsetDeclaration>& found) {
  // Like tags, statements are found by ASCII alone.
  const TextCoding coding(kUtf8CodePage);
  script::ScriptReader reader(server, coding);
  for (std::size_t begin = script::find_server_block(page, 0); begin < page.size();) {
    const std::size_t end = script::server_block_end(page, begin);
    const std::string_view block = page.substr(begin, end - begin);
    if (block.starts_with("<%@")) read_directive(block, found);
    reader.begin(block);
    Statements statements(found);
    for (script::ScriptReader::Read read; reader.next(read);)
      if (!read.is_between) statements.add_token(read.token, block.substr(read.token.begin, read.token.size()));
    begin = script::find_server_block(page, end);
  }
}

}  // namespace kavo::html
