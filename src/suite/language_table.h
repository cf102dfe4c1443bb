// The languages and code pages that the suite knows.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kavo {

struct LanguageRow {
  std::u16string_view code;  // as the suite stores it: "EN-US", "FR"
  std::u16string_view name;
  std::int32_t lcid;
  std::int32_t code_page;
};
std::span<const LanguageRow> language_rows();

struct CodePageRow {
  std::u16string_view name;
  std::u16string_view code;  // as documents declare it
  std::int32_t number;
};
std::span<const CodePageRow> code_page_rows();

}  // namespace kavo
