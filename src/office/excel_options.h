// What the export of workbooks takes in: per-user program settings ("KAVO", "Excel"), read by the export macro with
// GetSetting and therefore kept as the texts that it compares with.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

struct ExcelOptions {
  std::int32_t order = 0;             // "Order": which of the two export orders, 0 or 1
  bool hidden = true;                 // "Hidden": export hidden content
  bool formulas = true;               // "Formulas": export formulas
  bool ungroup = false;               // "Ungroup": ungroup objects before the export
  std::u16string tolerance = u"255";  // "Tolerance": decimal digits, at most 5; blank cells that the export steps over
  bool operator==(const ExcelOptions&) const = default;
};

// Settings that are missing have the values above. A flag is set, and the order 1, exactly when the text is "1".
ExcelOptions load_excel_options();
// An empty tolerance is stored as "255". Throws `failure` when the settings cannot be written.
void save_excel_options(const ExcelOptions& options);

}  // namespace kavo
