// What the export of workbooks includes: per-user program settings ("KAVO", "Excel"). The export macro reads them with
// GetSetting, so they are stored as the texts that it compares with.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

// The stored text is neither "0" nor "1". The export then goes along the rows, but saving the options stores "1".
inline constexpr std::int32_t kUnknownOrder = -1;

struct ExcelOptions {
  std::int32_t order = 0;  // "Order": 0 along the rows, 1 along the columns, or kUnknownOrder
  bool hidden = true;      // "Hidden": export hidden content
  bool formulas = true;    // "Formulas": export formulas
  bool ungroup = false;    // "Ungroup": ungroup objects before the export
  std::u16string tolerance =
      u"255";  // "Tolerance": decimal digits, at most 5; how many blank cells the export steps over
  bool operator==(const ExcelOptions&) const = default;
};

// Settings that are missing have the values above. A flag is set exactly when the text is "1".
ExcelOptions load_excel_options();
// An empty tolerance is stored as "255". Throws `failure` when the settings cannot be written.
void save_excel_options(const ExcelOptions& options);

}  // namespace kavo
