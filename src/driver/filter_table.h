// The filter table: which of the suite's filters takes which type of file.
//
// The table and the catalogue that fills it belong to the thread, not to an object. All K19FPWObj of a thread share
// them; creating one fills the table anew.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/file_type.h"
#include "common/messages.h"
#include "platform/automation.h"

namespace kavo {

// An installed filter as the suite's catalogue describes it.
struct FilterInfo {
  std::u16string first_text;
  std::u16string second_text;
  std::u16string filter_name;  // "" in an entry without a filter
  std::int32_t catalogue_value = 0;
  std::int32_t reserved = 0;  // 1 once the filter's settings were shown; not filled by the catalogue
};

// The thread's entry for a file type code. Throws `failure` 9 for a code outside 0 to 31.
const FilterInfo& filter_table(std::int32_t index);

// True when the filter of a type has settings to show. The catalogue's member HasSettings(filter) is optional; without
// it no filter has any. Never fails.
bool has_filter_settings(std::int32_t type);
// Shows the settings by the catalogue's Settings(filter) and marks the entry as configured. Does nothing when the type
// has no filter. Throws what the catalogue raises.
void show_filter_settings(std::int32_t type);

// Creates "K19Suite.FilterCatalogue" for this thread and releases an earlier one. Throws what the creation raises.
void create_filter_catalogue();
// Releases the catalogue; the table keeps its entries.
void release_filter_catalogue() noexcept;
// The thread's catalogue; throws `failure` 91 when there is none.
AutomationObject& filter_catalogue();

// The messages of the catalogue's last conversion, by its optional member Messages (one message a line). Throws what
// the catalogue raises.
MessageList filter_messages();

// Clears the thread's table and fills it by the catalogue's Enumerate(index, firstText, secondText, filterName,
// catalogueValue), called with 0, 1, 2 ... until it stops returning 1. A filter goes into the entry of every tag that
// its name holds; a later filter overwrites an earlier one. Throws what the catalogue raises.
void BuildFilterTable();

}  // namespace kavo
