#include "office/excel_options.h"

#include "common/program_settings.h"

namespace kavo {
namespace {

constexpr std::u16string_view kApplication = u"KAVO";
constexpr std::u16string_view kSection = u"Excel";

std::u16string_view text_of(bool flag) { return flag ? u"1" : u"0"; }

std::u16string read(std::u16string_view key, std::u16string_view default_value) {
  return get_setting(kApplication, kSection, key, default_value);
}

void write(std::u16string_view key, std::u16string_view value) { save_setting(kApplication, kSection, key, value); }

bool read_flag(std::u16string_view key, bool default_value) { return read(key, text_of(default_value)) == u"1"; }

std::int32_t read_order() {
  const std::u16string text = read(u"Order", text_of(ExcelOptions().order != 0));
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
  options.tolerance = read(u"Tolerance", defaults.tolerance);
  return options;
}

void save_excel_options(const ExcelOptions& options) {
  write(u"Order", text_of(options.order != 0));
  write(u"Hidden", text_of(options.hidden));
  write(u"Formulas", text_of(options.formulas));
  write(u"Ungroup", text_of(options.ungroup));
  write(u"Tolerance", options.tolerance.empty() ? ExcelOptions().tolerance : options.tolerance);
}

}  // namespace kavo
