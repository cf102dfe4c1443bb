#include "suite/memory/script_lines.h"

#include <string>
#include <vector>

#include "suite/document/coded_text.h"

namespace kavo {
namespace {

struct QuotedText {
  std::string text;  // without its quotes
  std::string code;  // the id of the code before it, when only that code is between it and the previous text
};

// The texts between quotes. A quote inside is written twice (VBScript) or after a backslash (JavaScript, Java, PHP).
std::vector<QuotedText> quoted_texts(std::string_view line) {
  std::vector<QuotedText> texts;
  std::string code;
  bool is_joined = false;  // so far only one code has followed the previous text
  CodedTextReader reader(line);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      is_joined = code.empty();
      code = part.text;
      continue;
    }
    for (std::size_t at = 0; at < part.text.size();) {
      const char quote = part.text[at];
      if (quote != '"' && quote != '\'') {
        is_joined = is_joined && (quote == ' ' || quote == '\t');
        ++at;
        continue;
      }
      std::string text;
      for (++at; at < part.text.size(); ++at) {
        const bool is_doubled = part.text.substr(at).starts_with(std::string(2, quote));
        const bool is_escaped = part.text[at] == '\\' && at + 1 < part.text.size() &&
                                (part.text[at + 1] == '"' || part.text[at + 1] == '\'');
        if (is_doubled || is_escaped)
          ++at;
        else if (part.text[at] == quote)
          break;
        text += part.text[at];
      }
      if (at == part.text.size()) return texts;  // no end: no text
      ++at;
      texts.push_back({std::move(text), is_joined && texts.size() > 0 ? code : std::string()});
      code.clear();
      is_joined = false;
    }
  }
  return texts;
}

}  // namespace

void texts_of_line(std::string_view source, std::string_view target,
                   const std::function<void(std::string_view source, std::string_view target)>& take) {
  const std::vector<QuotedText> from = quoted_texts(source), to = quoted_texts(target);
  if (from.size() != to.size()) return;
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::string joined_source = from[i].text, joined_target = to[i].text;
    std::uint32_t code = 0;
    while (i + 1 < from.size() && !from[i + 1].code.empty() && from[i + 1].code == to[i + 1].code) {
      take(from[i].text, to[i].text);
      ++i;
      ++code;
      append_code(joined_source, CodeKind::kStandalone, code);
      append_code(joined_target, CodeKind::kStandalone, code);
      joined_source += from[i].text;
      joined_target += to[i].text;
    }
    if (code != 0) take(from[i].text, to[i].text);
    take(joined_source, joined_target);
  }
}

}  // namespace kavo
