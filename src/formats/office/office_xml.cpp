#include "formats/office/office_xml.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "formats/text/text_coding.h"

namespace kavo::office {
namespace {

constexpr std::string_view kComment = "<!--";
constexpr std::string_view kSpace = " \t\r\n";

bool is_space(char c) { return kSpace.find(c) != kSpace.npos; }

}  // namespace

std::string_view Tag::attribute(std::string_view wanted) const {
  for (std::size_t at = 0; (at = bytes.find(wanted, at)) != bytes.npos; at += wanted.size()) {
    const std::size_t end = at + wanted.size();
    if (at == 0 || !is_space(bytes[at - 1]) || end + 1 >= bytes.size() || bytes[end] != '=') continue;
    const char quote = bytes[end + 1];
    const std::size_t close = bytes.find(quote, end + 2);
    if ((quote == '"' || quote == '\'') && close != bytes.npos) return bytes.substr(end + 2, close - end - 2);
  }
  return {};
}

std::string Tag::text_of(std::string_view wanted) const {
  std::string text;
  for (std::string_view rest = attribute(wanted); !rest.empty();) {
    const std::size_t length = rest[0] == '&' ? reference_length(rest) : 0;
    const std::string character = length == 0 ? std::string() : character_of(rest.substr(0, length));
    text += character.empty() ? std::string(1, rest[0]) : character;
    rest.remove_prefix(character.empty() ? 1 : length);
  }
  return text;
}

std::optional<std::size_t> tag_length(std::string_view text) {
  const auto behind = [&](std::string_view end, std::size_t from) -> std::optional<std::size_t> {
    const std::size_t found = text.find(end, from);
    if (found == text.npos) return std::nullopt;
    return found + end.size();
  };
  if (text.size() < kComment.size() && kComment.starts_with(text)) return std::nullopt;
  if (text.starts_with(kComment)) return behind("-->", kComment.size());
  if (text.starts_with("<?")) return behind("?>", 2);
  char quote = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (quote != 0)
      quote = text[i] == quote ? 0 : quote;
    else if (text[i] == '"' || text[i] == '\'')
      quote = text[i];
    else if (text[i] == '>')
      return i + 1;
  }
  return std::nullopt;
}

Tag tag_of(std::string_view bytes) {
  Tag tag;
  tag.bytes = bytes;
  if (bytes.starts_with("<?") || bytes.starts_with("<!")) return tag;
  tag.is_end = bytes.starts_with("</");
  tag.is_empty = bytes.ends_with("/>");
  const std::size_t begin = tag.is_end ? 2 : 1;
  const std::size_t end = std::min(bytes.find_first_of(" \t\r\n/>", begin), bytes.size());
  tag.name = bytes.substr(begin, end - begin);
  return tag;
}

std::size_t reference_length(std::string_view text) {
  constexpr std::size_t kLongest = 10;  // "&#1114111;"
  const std::size_t end = text.substr(0, kLongest).find(';');
  return end == text.npos ? 0 : end + 1;
}

std::string character_of(std::string_view reference) {
  struct Named {
    std::string_view name;
    char character;
  };
  constexpr Named kNamed[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
  for (const Named& named : kNamed)
    if (named.name == reference) return std::string(1, named.character);
  if (!reference.starts_with("&#") || !reference.ends_with(';')) return {};
  const bool is_hexadecimal = reference[2] == 'x';
  const char* const begin = reference.data() + (is_hexadecimal ? 3 : 2);
  const char* const end = reference.data() + reference.size() - 1;
  std::uint32_t code = 0;
  const auto [stop, error] = std::from_chars(begin, end, code, is_hexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end || !is_xml_character(code)) return {};
  std::string character;
  append_utf8(character, code);
  return character;
}

std::vector<RunKind> run_kinds(std::string_view list) {
  std::vector<RunKind> kinds;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(' '), list.size());
    const std::string_view word = list.substr(0, end);
    kinds.push_back(word == "link" ? RunKind::kLink : word == "field" ? RunKind::kField : RunKind::kText);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return kinds;
}

bool is_within(std::string_view place, std::string_view outer) {
  return place.starts_with(outer) && (place.size() == outer.size() || place[outer.size()] == '/');
}

std::string kind_of_place(std::string_view place) {
  std::string kind;
  bool is_number = false;
  for (const char c : place) {
    is_number = c == ':' || (is_number && c != '/');
    if (!is_number) kind += c;
  }
  return kind;
}

}  // namespace kavo::office
