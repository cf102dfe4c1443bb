#include "html/repair/repair_report.h"

#include <algorithm>

#include "common/clsCommon.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::size_t kMostMessages = 10'000;

}  // namespace

std::string RepairReport::name_of_element(Tag tag, int listed) const {
  return listed >= 0 ? table_.name(listed) : to_utf8(ascii_upper(to_utf16(name_of(tag))));
}

void RepairReport::add(TextRow row, const PagePlace& place, std::string_view element, std::string_view other) {
  if (messages_.size() >= kMostMessages) {
    ++untold_;
    return;
  }
  const LinePlace told = origin_ ? origin_(place.position) : LinePlace{place.line, place.column};
  std::u16string shown = to_utf16(element);
  std::replace(shown.begin(), shown.end(), u'%', u'?');  // FormatString would take it for a placeholder
  const std::u16string values[] = {shown, formatted(u"{}", told.line), formatted(u"{}", told.column), to_utf16(other)};
  messages_.push_back({clsCommon().FormatString(row.text, values), row.number, told.line, told.column});
}

void RepairReport::finish() {
  if (untold_ == 0) return;
  const std::u16string count[] = {formatted(u"{}", untold_)};
  messages_.push_back({clsCommon().FormatString(u"%1% more messages are not listed", count)});
}

}  // namespace kavo
