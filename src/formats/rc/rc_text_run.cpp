#include "formats/rc/rc_text_run.h"

#include <algorithm>

namespace kavo::rc {
namespace {

// A macro with more arguments is none, so that no bracket makes the search long.
constexpr std::size_t kLongestMacro = 64;  // items

// Names after a text that are not macros.
constexpr std::string_view kKeywords[] = {
    "STYLE",           "EXSTYLE", "CAPTION",  "CLASS", "FONT",    "MENU",         "LANGUAGE",
    "CHARACTERISTICS", "GRAYED",  "INACTIVE", "HELP",  "CHECKED", "MENUBARBREAK", "MENUBREAK",
};

bool is_name(const RcStatement& statement, std::size_t item) {
  if (item >= statement.items.size() || statement.items[item].kind != RcTokenKind::kWord) return false;
  const std::string_view word = statement.text(statement.items[item]);
  return is_macro_name(word) &&
         std::ranges::none_of(kKeywords, [&](auto keyword) { return is_keyword(word, keyword); });
}

}  // namespace

std::optional<std::size_t> macro_end(const RcStatement& statement, std::size_t item) {
  if (!is_name(statement, item)) return std::nullopt;
  const std::size_t open = statement.significant(item + 1);
  if (open >= statement.items.size() || statement.text(statement.items[open]) != "(") return item;
  const std::size_t limit = std::min(statement.items.size(), item + kLongestMacro);
  std::size_t depth = 0;
  for (std::size_t at = open; at < limit; ++at) {
    const RcTokenKind kind = statement.items[at].kind;
    if (kind == RcTokenKind::kLiteral || kind == RcTokenKind::kDirective || kind == RcTokenKind::kRest) break;
    const std::string_view text = statement.text(statement.items[at]);
    if (kind == RcTokenKind::kMark && text == "(") ++depth;
    if (kind == RcTokenKind::kMark && text == ")" && --depth == 0) return at;
  }
  return std::nullopt;
}

std::optional<RcTextRun> literals_at(const RcStatement& statement, std::size_t item) {
  const auto& items = statement.items;
  if (item >= items.size() || items[item].kind != RcTokenKind::kLiteral) return std::nullopt;
  RcTextRun run{item, item};
  for (++item; item < items.size(); ++item) {
    if (items[item].kind == RcTokenKind::kLiteral)
      run.last = item;
    else if (items[item].kind != RcTokenKind::kBlank && items[item].kind != RcTokenKind::kComment)
      break;
  }
  return run;
}

std::optional<RcTextRun> text_at(const RcStatement& statement, std::size_t item, RcMacros macros) {
  const auto& items = statement.items;
  if (!literals_at(statement, item) && !macro_end(statement, item)) return std::nullopt;
  RcTextRun run{item, item};
  bool has_literal = false;
  bool is_line_start = false;
  for (; item < items.size(); ++item) {
    const RcTokenKind kind = items[item].kind;
    if (kind == RcTokenKind::kBlank || kind == RcTokenKind::kComment) {
      is_line_start = is_line_start || ends_line(kind, statement.text(items[item]));
      continue;
    }
    if (kind == RcTokenKind::kLiteral) {
      has_literal = true;
    } else {
      const auto end = is_line_start && macros == RcMacros::kOnLine ? std::nullopt : macro_end(statement, item);
      if (!end) break;
      item = *end;
    }
    run.last = item;
    is_line_start = false;
  }
  return has_literal ? std::optional(run) : std::nullopt;
}

RcTextRun without_last_macros(const RcStatement& statement, RcTextRun run) {
  while (statement.items[run.last].kind != RcTokenKind::kLiteral) --run.last;
  return run;
}

}  // namespace kavo::rc
