// The filter table: which of the suite's filters takes which type of file.
//
// The table and the catalogue object it is filled from belong to the thread, not to an object: every K19FPWObj of a
// thread shares them, the last one created fills them anew.
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
  std::int32_t reserved = 0;  // not the catalogue's: 1 once the settings of the filter were shown
};

// The thread's entry for a file type code; throws `failure` 9 for an index outside 0 to 31.
const FilterInfo& filter_table(std::int32_t index);

// Whether the filter of a type has settings to show, as far as the catalogue says: its member HasSettings(filter) is
// optional, and a catalogue without it has none. Never fails.
bool has_filter_settings(std::int32_t type);
// Shows them by the catalogue's Settings(filter) and marks the entry as configured; without a filter it does nothing.
// Throws what the catalogue raises.
void show_filter_settings(std::int32_t type);

// Creates "K19Suite.FilterCatalogue" for this thread, in the place of the one before. Throws what its creation raises.
void create_filter_catalogue();
// Releases it; the table keeps what it holds.
void release_filter_catalogue() noexcept;
// The thread's catalogue; throws `failure` 91 when there is none.
AutomationObject& filter_catalogue();

// What the catalogue's last conversion has to say beside its result, by its member Messages (a message on each line),
// which is optional. Throws what the catalogue raises.
MessageList filter_messages();

// Clears the thread's table and fills it from the catalogue's Enumerate(index, firstText, secondText, filterName,
// catalogueValue), called with 0, 1, 2 ... while it answers 1. A filter goes to the entry of every tag that its name
// holds; a later one overwrites. Throws what the catalogue raises.
void BuildFilterTable();

}  // namespace kavo
