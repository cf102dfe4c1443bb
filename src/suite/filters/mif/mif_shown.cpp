#include "suite/filters/mif/mif_shown.h"

#include <algorithm>
#include <vector>

#include "formats/mif/tokens.h"
#include "suite/filters/mif/mif_statement.h"

namespace kavo::mif {
namespace {

// A code is shown as its name and this many of its strings, cut to this many bytes.
constexpr std::size_t kMostStrings = 2;
constexpr std::size_t kMostShown = 200;

std::vector<std::string> first_strings(std::string_view statement, std::size_t most, const StringCoding& coding) {
  std::vector<std::string> strings;
  MifTokenScanner scanner;
  MifToken token;
  for (std::size_t at = 0; at < statement.size() && strings.size() < most; at += token.bytes.size()) {
    scanner.next(statement.substr(at), true, token);
    if (token.kind != MifTokenKind::kString) continue;
    if (std::string string = decode_string(token.value(), coding); !string.empty())
      strings.push_back(std::move(string));
  }
  return strings;
}

}  // namespace

std::string shown_of_code(std::string_view statement, bool is_variable, const StringCoding& coding) {
  std::string text;
  for (const std::string& string : first_strings(statement, kMostStrings, coding))
    text += (text.empty() ? "" : ", ") + string;
  if (text.empty()) return std::string(trimmed(statement.substr(1, std::min(statement.size() - 2, kMostShown))));
  if (is_variable) return text;
  const auto* const name_end =
      std::find_if(statement.begin() + 1, statement.end(), [](char c) { return is_blank(c) || is_line_end(c); });
  return std::string(statement.begin() + 1, name_end) + ": " + text;
}

std::string name_in(std::string_view statement, const StringCoding& coding) {
  const std::vector<std::string> strings = first_strings(statement, 1, coding);
  return strings.empty() ? std::string() : strings.front();
}

}  // namespace kavo::mif
