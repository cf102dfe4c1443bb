#include "driver/filter_table.h"

#include <algorithm>
#include <array>
#include <limits>

#include "common/path_parts.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

using FilterTable = std::array<FilterInfo, 32>;

struct ThreadState {
  ObjectRef catalogue;
  FilterTable table;
};
ThreadState& thread_state() {
  thread_local ThreadState state;
  return state;
}

// Reads one filter from the catalogue; false past the last one.
bool enumerate(AutomationObject& catalogue, std::int32_t index, FilterInfo& info) {
  Argument arguments[] = {by_value(index), by_reference(std::u16string()), by_reference(std::u16string()),
                          by_reference(std::u16string()), by_reference(std::int32_t{0})};
  if (as_number(catalogue.invoke(u"Enumerate", arguments)) != 1) return false;
  info.first_text = as_text(arguments[1].value);
  info.second_text = as_text(arguments[2].value);
  info.filter_name = as_text(arguments[3].value);
  info.catalogue_value = as_number(arguments[4].value);
  return true;
}

}  // namespace

const FilterInfo& filter_table(std::int32_t index) {
  const FilterTable& table = thread_state().table;
  if (index < 0 || static_cast<std::size_t>(index) >= table.size())
    throw failure(FailureNumber::kSubscriptOutOfRange, u"Subscript out of range");
  return table[static_cast<std::size_t>(index)];
}

bool has_filter_settings(std::int32_t type) {
  const std::u16string name = filter_table(type).filter_name;
  if (name.empty()) return false;
  try {
    if (!filter_catalogue().has_member(u"HasSettings")) return false;
    Argument filter[] = {by_value(name)};
    return as_flag(filter_catalogue().invoke(u"HasSettings", filter));
  } catch (const failure&) {
    return false;
  }
}

void show_filter_settings(std::int32_t type) {
  const std::u16string name = filter_table(type).filter_name;
  if (name.empty()) return;
  Argument filter[] = {by_value(name)};
  filter_catalogue().invoke(u"Settings", filter);
  thread_state().table[static_cast<std::size_t>(type)].reserved = 1;
}

void create_filter_catalogue() { thread_state().catalogue = ports().automation->create(u"K19Suite.FilterCatalogue"); }

void release_filter_catalogue() noexcept { thread_state().catalogue.reset(); }

AutomationObject& filter_catalogue() {
  const ObjectRef& catalogue = thread_state().catalogue;
  if (!catalogue) throw failure(FailureNumber::kNoObject, u"The filter catalogue was released");
  return *catalogue;
}

MessageList filter_messages() {
  MessageList messages;
  if (!filter_catalogue().has_member(u"Messages")) return messages;
  const std::u16string lines = as_text(filter_catalogue().get(u"Messages"));
  for (std::size_t at = 0; at < lines.size();) {
    const std::size_t end = std::min(lines.find(u'\n', at), lines.size());
    messages.push_back({lines.substr(at, end - at)});
    at = end + 1;
  }
  return messages;
}

void BuildFilterTable() {
  FilterTable& table = thread_state().table;
  table.fill({});
  AutomationObject& catalogue = filter_catalogue();
  for (std::int32_t index = 0;; ++index) {
    FilterInfo info;
    if (!enumerate(catalogue, index, info)) return;
    const std::u16string name = ascii_upper(info.filter_name);
    for (const FileTypeRow& row : file_types())
      if (!row.filter_tag.empty() && name.find(row.filter_tag) != std::u16string::npos)
        table[static_cast<std::size_t>(row.code)] = info;
    if (index == std::numeric_limits<std::int32_t>::max()) throw failure(FailureNumber::kOverflow, u"Overflow");
  }
}

}  // namespace kavo
