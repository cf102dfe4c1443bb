#include "cli/setting_table.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "cli/colours.h"
#include "cli/mif_options.h"
#include "common/document_kind.h"
#include "common/nearest.h"
#include "driver/preparation.h"
#include "driver/status_colours.h"
#include "mif/mif_settings.h"
#include "office/excel_options.h"
#include "office/time_limit.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/components/editor_launcher.h"
#include "suite/filters/filter_options.h"

namespace kavo {
namespace {

// The value that deletes a stored colour.
constexpr std::string_view kDefault = "default";

std::string mif_split() { return split_option_name(load_mif_settings().split); }
bool set_mif_split(const std::string& value) {
  const auto found = split_option_names().find(value);
  if (found == split_option_names().end()) return false;
  store_mif_split(found->second);
  return true;
}

std::string mif_markers() { return marker_names_of(load_mif_settings().markers); }
bool set_mif_markers(const std::string& value) {
  store_mif_markers(marker_list_of(value));
  return true;
}

std::string time_limit() {
  const auto seconds = stored_time_limit();
  return seconds ? std::to_string(*seconds) : std::string(kDefault);
}
bool set_time_limit(const std::string& value) {
  std::int32_t seconds = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), seconds);
  const bool is_number = error == std::errc() && end == value.data() + value.size();
  if (value != kDefault && (!is_number || seconds < 1 || seconds > kLongestTimeLimit)) return false;
  store_time_limit(is_number ? std::optional(seconds) : std::nullopt);
  return true;
}

// The options of workbooks, as their dialog stores them.
template <bool ExcelOptions::*Member>
Setting workbook_switch(std::string name, std::string what) {
  return {std::move(name), "on or off: " + std::move(what), [] { return load_excel_options().*Member ? "on" : "off"; },
          [](const std::string& value) {
            if (value != "on" && value != "off") return false;
            ExcelOptions options = load_excel_options();
            options.*Member = value == "on";
            save_excel_options(options);
            return true;
          }};
}

std::string workbook_order() { return load_excel_options().order == 1 ? "columns" : "rows"; }
bool set_workbook_order(const std::string& value) {
  if (value != "rows" && value != "columns") return false;
  ExcelOptions options = load_excel_options();
  options.order = value == "columns" ? 1 : 0;
  save_excel_options(options);
  return true;
}

std::string workbook_tolerance() { return to_utf8(load_excel_options().tolerance); }
bool set_workbook_tolerance(const std::string& value) {
  constexpr std::size_t kMostDigits = 5;
  if (value.empty() || value.size() > kMostDigits || value.find_first_not_of("0123456789") != value.npos) return false;
  ExcelOptions options = load_excel_options();
  options.tolerance = to_utf16(value);
  save_excel_options(options);
  return true;
}

Setting switch_setting(std::string name, const std::string& what_for, bool (*read)(), void (*write)(bool)) {
  return {std::move(name), "on or off" + what_for, [read] { return read() ? "on" : "off"; },
          [write](const std::string& value) {
            if (value != "on" && value != "off") return false;
            write(value == "on");
            return true;
          }};
}

// A setting that can be any text.
Setting text_setting(std::string name, std::string values, std::u16string (*read)(), void (*write)(std::u16string_view),
                     bool starts_program = false) {
  return {std::move(name), std::move(values), [read] { return to_utf8(read()); },
          [write](const std::string& value) {
            write(to_utf16(value));
            return true;
          },
          starts_program};
}

template <std::size_t Status>
std::string status_colour() {
  return colour_text(stored_status_colours(kUsualStatusColours)[Status]);
}
template <std::size_t Status>
bool set_status_colour(const std::string& value) {
  const std::optional<std::int32_t> colour = colour_of(value);
  if (!colour && value != kDefault) return false;
  store_status_colour(Status, colour);
  return true;
}

constexpr const char* kColour =
    "a colour by its name (red, blue, green, orange ...), #RRGGBB, or default: for rebuild --highlight";

// The lasting options of the filters.
Setting setting_of(const FilterOption& option) {
  const std::string key(option.key);
  return {key,
          values_of(option) + ", or default",
          [key] { return std::string(option_text(stored_filter_options(), key)); },
          [key](const std::string& value) {
            const bool is_default = value == kDefault;
            if (!is_default && !option_problem(key, value).empty()) return false;
            store_filter_option(key, is_default ? "" : value);
            return true;
          },
          false,
          option.kind == OptionKind::kPatterns                                     ? '\t'
          : option.kind == OptionKind::kWords || option.kind == OptionKind::kNames ? ','
                                                                                   : '\0'};
}

std::vector<Setting> all_settings() {
  std::vector<Setting> settings{
      {"mif.split", "none, semicolon or both", mif_split, set_mif_split},
      switch_setting(
          "mif.objects", ": whether hosts take embedded objects out of MIF files; prepare leaves them in the skeleton",
          [] { return load_mif_settings().objects; }, store_mif_objects),
      {"mif.markers", "marker types separated by commas", mif_markers, set_mif_markers, false, ','},
      {"office.time-limit",
       "seconds for which LibreOffice may work on a document without a sign of life, from 1 to " +
           std::to_string(kLongestTimeLimit) + ", or default: a minute and half a minute for each megabyte",
       time_limit, set_time_limit},
      {"xls.order", "rows or columns: the order in which the cells of workbooks are offered", workbook_order,
       set_workbook_order},
      workbook_switch<&ExcelOptions::hidden>("xls.hidden", "hidden sheets, rows and columns of workbooks, too"),
      workbook_switch<&ExcelOptions::formulas>("xls.formulas", "formulas of workbooks are shown to read along"),
      workbook_switch<&ExcelOptions::ungroup>("xls.ungroup", "groups of shapes in workbooks are dissolved"),
      {"xls.tolerance", "digits: after more successive blank cells than this the rest of a workbook's row is left out",
       workbook_tolerance, set_workbook_tolerance},
      text_setting("editor.command", "the editor's command line, %1 for the document and %2 for the memory",
                   editor_command, editor_command, true),
      switch_setting("pages.repair", ": whether prepare repairs the tags of pages", repairs_pages, store_repairs_pages),
      text_setting("pages.extensions", "more extensions of server pages, separated by blanks", added_page_extensions,
                   store_page_extensions),
      text_setting("pages.fragments", "more extensions of parts of pages, separated by blanks",
                   added_fragment_extensions, store_fragment_extensions),
      {"highlight.untranslated", kColour, status_colour<0>, set_status_colour<0>},
      {"highlight.fuzzy", kColour, status_colour<1>, set_status_colour<1>},
      {"highlight.match", kColour, status_colour<2>, set_status_colour<2>},
      {"highlight.translated", kColour, status_colour<3>, set_status_colour<3>},
  };
  for (Setting& setting : settings)
    setting.shapes_documents = !setting.starts_program && !setting.name.starts_with("highlight.") &&
                               setting.name != "office.time-limit" && setting.name != "mif.objects";
  for (const FilterOption& option : filter_options())
    if (is_lasting(option)) settings.push_back(setting_of(option));
  return settings;
}

}  // namespace

const std::vector<Setting>& known_settings() {
  static const std::vector<Setting> settings = all_settings();
  return settings;
}

const Setting* find_setting(std::string_view name) {
  const auto found = std::ranges::find(known_settings(), name, &Setting::name);
  return found == known_settings().end() ? nullptr : &*found;
}

std::string nearest_setting(std::string_view name) {
  std::vector<std::string_view> names;
  for (const Setting& setting : known_settings()) names.push_back(setting.name);
  return std::string(nearest(name, std::move(names)).front());
}

void change_setting(const Setting& setting, const std::string& value) {
  if (!setting.write(value))
    throw failure(FailureNumber::kInvalidCall, to_utf16(setting.name + " can be " + setting.values));
}

}  // namespace kavo
