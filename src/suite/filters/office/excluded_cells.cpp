#include "suite/filters/office/excluded_cells.h"

#include <algorithm>
#include <charconv>

#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"

namespace kavo::office {
namespace {

constexpr std::string_view kColumns = "xls.excluded-columns";
constexpr std::string_view kRows = "xls.excluded-rows";
constexpr std::string_view kSheet = "sheet:";
constexpr std::string_view kCell = "cell:";
constexpr std::string_view kDigits = "0123456789";

// "A" is 1, "AA" is 27.
std::uint32_t column_number(std::string_view letters) {
  constexpr std::size_t kLongest = 4;
  if (letters.size() > kLongest) return 0;
  std::uint32_t number = 0;
  for (const char letter : letters) {
    const char upper = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    if (upper < 'A' || upper > 'Z') return 0;
    number = number * 26 + static_cast<std::uint32_t>(upper - 'A' + 1);
  }
  return number;
}

std::uint32_t row_number(std::string_view digits) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

}  // namespace

ExcludedCells::ExcludedCells(const FilterOptions& options)
    : columns_(ranges_of(options, kColumns, column_number)), rows_(ranges_of(options, kRows, row_number)) {
  for (const std::string& name : option_items(options, "xls.excluded-sheets")) sheets_.push_back(to_utf16(name));
  for (const std::string& name : option_items(options, "xls.excluded-styles")) styles_.push_back(to_utf16(name));
}

// "B", "C:E", "Prices!B"; a sheet's name may hold "!".
std::vector<ExcludedCells::Range> ExcludedCells::ranges_of(const FilterOptions& options, std::string_view key,
                                                           Number number_of) {
  std::vector<Range> ranges;
  for (const std::string& item : option_items(options, key)) {
    Range range;
    std::string_view rest = item;
    if (const std::size_t mark = rest.rfind('!'); mark != rest.npos) {
      range.sheet = to_utf16(trimmed(rest.substr(0, mark), " \t"));
      rest.remove_prefix(mark + 1);
    }
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const std::string_view last = colon == rest.size() ? rest : rest.substr(colon + 1);
    range.first = number_of(trimmed(rest.substr(0, colon), " \t"));
    range.last = number_of(trimmed(last, " \t"));
    if (range.first == 0 || range.last < range.first)
      throw failure(FailureNumber::kInvalidCall,
                    formatted(u"{}: \"{}\" is neither one nor a range of them; write {}", to_utf16(key), to_utf16(item),
                              key == kColumns ? u"B, C:E or Prices!B" : u"1, 3:5 or Prices!1"));
    ranges.push_back(std::move(range));
  }
  return ranges;
}

bool ExcludedCells::is_in(const std::vector<Range>& ranges, std::u16string_view sheet, std::uint32_t number) {
  return std::ranges::any_of(ranges, [&](const Range& range) {
    return number >= range.first && number <= range.last &&
           (range.sheet.empty() || equal_ignoring_case(range.sheet, sheet));
  });
}

bool ExcludedCells::is_in(const std::vector<std::u16string>& names, std::u16string_view name) {
  return std::ranges::any_of(names, [&](const std::u16string& one) { return equal_ignoring_case(one, name); });
}

bool ExcludedCells::has(std::string_view place, std::string_view sheet_name, std::string_view style) const {
  if (!place.starts_with(kSheet)) return false;
  if (!styles_.empty() && !style.empty() && is_in(styles_, to_utf16(style))) return true;
  if (sheets_.empty() && columns_.empty() && rows_.empty()) return false;
  const std::u16string sheet = to_utf16(sheet_name);
  if (is_in(sheets_, sheet)) return true;
  place.remove_prefix(std::min(place.find('/'), place.size() - 1) + 1);
  if (!place.starts_with(kCell)) return false;
  place = place.substr(kCell.size(), place.find('/') - kCell.size());
  const std::size_t digits = std::min(place.find_first_of(kDigits), place.size());
  return is_in(columns_, sheet, column_number(place.substr(0, digits))) ||
         is_in(rows_, sheet, row_number(place.substr(digits)));
}

}  // namespace kavo::office
