#include "formats/rtf/characters.h"

#include <algorithm>
#include <iterator>

namespace kavo::rtf {
namespace {

struct Named {
  std::string_view name;
  std::string_view character;
};
constexpr Named kWords[] = {
    {"bullet", "\u2022"},   {"emdash", "\u2014"},    {"emspace", "\u2003"}, {"endash", "\u2013"},
    {"enspace", "\u2002"},  {"ldblquote", "\u201C"}, {"lquote", "\u2018"},  {"ltrmark", "\u200E"},
    {"qmspace", "\u2005"},  {"rdblquote", "\u201D"}, {"rquote", "\u2019"},  {"rtlmark", "\u200F"},
    {"zwbo", "\u200B"},     {"zwj", "\u200D"},       {"zwnbo", "\uFEFF"},   {"zwnj", "\u200C"},
};
static_assert(std::is_sorted(std::begin(kWords), std::end(kWords),
                             [](const Named& a, const Named& b) { return a.name < b.name; }));

struct Symbol {
  char symbol;
  std::string_view character;
  std::string_view written;
};
constexpr Symbol kSymbols[] = {
    {'\\', "\\", "\\\\"}, {'{', "{", "\\{"},           {'}', "}", "\\}"},
    {'~', "\u00A0", "\\~"}, {'-', "\u00AD", "\\-"}, {'_', "\u2011", "\\_"},
};

}  // namespace

std::string_view character_of(const Token& token) {
  if (token.kind == TokenKind::kSymbol) {
    for (const Symbol& known : kSymbols)
      if (known.symbol == token.symbol()) return known.character;
    return {};
  }
  if (token.kind != TokenKind::kWord) return {};
  const auto* const found = std::lower_bound(std::begin(kWords), std::end(kWords), token.name,
                                             [](const Named& row, std::string_view name) { return row.name < name; });
  return found != std::end(kWords) && found->name == token.name ? found->character : std::string_view();
}

std::string_view written_form(std::string_view character) {
  for (const Symbol& known : kSymbols)
    if (known.character == character) return known.written;
  return {};
}

}  // namespace kavo::rtf
