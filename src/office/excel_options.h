// What the export of workbooks takes in: per-user program settings ("KAVO", "Excel"), read by the export macro with
// GetSetting and therefore kept as the texts that it compares with.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

// What is stored is neither order: the export goes along the rows, and storing it gives 1.
inline constexpr std::int32_t kUnknownOrder = -1;

struct ExcelOptions {
  std::int32_t order = 0;             // "Order": 0 along the rows, 1 along the columns, or kUnknownOrder
  bool hidden = true;                 // "Hidden": export hidden content
  bool formulas = true;               // "Formulas": export formulas
  bool ungroup = false;               // "Ungroup": ungroup objects before the export
  std::u16string tolerance = u"255";  // "Tolerance": decimal digits, at most 5; blank cells that the export steps over
  bool operator==(const ExcelOptions&) const = default;
};

// Settings that are missing have the values above. A flag is set exactly when the text is "1".
ExcelOptions load_excel_options();
// An empty tolerance is stored as "255". Throws `failure` when the settings cannot be written.
void save_excel_options(const ExcelOptions& options);

}  // namespace kavo
