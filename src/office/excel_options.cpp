#include "office/excel_options.h"

#include "common/program_settings.h"

namespace kavo {
namespace {

std::u16string_view text_of(bool flag) { return flag ? u"1" : u"0"; }

bool read_flag(std::u16string_view key, bool default_value) {
  return kExcelSettings.get(key, text_of(default_value)) == u"1";
}

std::int32_t read_order() {
  const std::u16string text = kExcelSettings.get(u"Order", text_of(ExcelOptions().order != 0));
  if (text == u"0") return 0;
  return text == u"1" ? 1 : kUnknownOrder;
}

}  // namespace

ExcelOptions load_excel_options() {
  const ExcelOptions defaults;
  ExcelOptions options;
  options.order = read_order();
  options.hidden = read_flag(u"Hidden", defaults.hidden);
  options.formulas = read_flag(u"Formulas", defaults.formulas);
  options.ungroup = read_flag(u"Ungroup", defaults.ungroup);
  options.tolerance = kExcelSettings.get(u"Tolerance", defaults.tolerance);
  return options;
}

void save_excel_options(const ExcelOptions& options) {
  kExcelSettings.save(u"Order", text_of(options.order != 0));
  kExcelSettings.save(u"Hidden", text_of(options.hidden));
  kExcelSettings.save(u"Formulas", text_of(options.formulas));
  kExcelSettings.save(u"Ungroup", text_of(options.ungroup));
  kExcelSettings.save(u"Tolerance", options.tolerance.empty() ? ExcelOptions().tolerance : options.tolerance);
}

}  // namespace kavo
