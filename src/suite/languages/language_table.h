// The languages and code pages that the suite knows. The languages come from languages.tsv, which names the source of
// each column.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kavo {

struct LanguageRow {
  std::u16string_view code;  // as the suite stores it: "EN-US", "FR"
  std::u16string_view name;
  std::int32_t lcid;           // Windows locale identifier, 0x1000 when there is none
  std::int32_t code_page;      // ANSI, 65001 when there is none
  std::u16string_view script;  // ISO 15924
  std::u16string_view tags;    // further tags of the language, in capitals, separated by blanks
};
// The rows are sorted by name. If a picker could preselect several variants of a language, the last one counts.
std::span<const LanguageRow> language_rows();

struct CodePageRow {
  std::u16string_view name;
  std::u16string_view code;  // as documents declare it
  std::int32_t number;
};
std::span<const CodePageRow> code_page_rows();

}  // namespace kavo
