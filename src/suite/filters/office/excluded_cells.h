// Knows which sheets, columns, rows and styles of a workbook are not translated, by the options "xls.excluded-...".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/filter_options.h"

namespace kavo::office {

class ExcludedCells {
 public:
  // Throws `failure` 5 for something that is not a column or row.
  explicit ExcludedCells(const FilterOptions& options);
  // True when the text at a place ("sheet:1/cell:B2/comment") of the sheet with that name, in a cell of that style, is
  // left alone. Both in UTF-8; "" for the usual style.
  bool has(std::string_view place, std::string_view sheet, std::string_view style) const;

 private:
  // Columns or rows, both ends included, counted from 1.
  struct Range {
    std::u16string sheet;  // "" for every one
    std::uint32_t first = 0;
    std::uint32_t last = 0;
  };
  using Number = std::uint32_t (*)(std::string_view text);  // 0 for anything else
  static std::vector<Range> ranges_of(const FilterOptions& options, std::string_view key, Number number_of);
  static bool is_in(const std::vector<std::u16string>& names, std::u16string_view name);
  static bool is_in(const std::vector<Range>& ranges, std::u16string_view sheet, std::uint32_t number);

  std::vector<std::u16string> sheets_;
  std::vector<Range> columns_;
  std::vector<Range> rows_;
  std::vector<std::u16string> styles_;
};

}  // namespace kavo::office
