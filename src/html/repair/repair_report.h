// The messages of a repair, with the places of the tags they are about.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/line_index.h"
#include "common/messages.h"
#include "formats/html/tag_names.h"
#include "formats/text/line_counter.h"
#include "html/repair/tag_table.h"
#include "resources/string_table.h"

namespace kavo {

class RepairReport {
 public:
  // Borrows both.
  RepairReport(const TagTable& table, MessageList& messages) : table_(table), messages_(messages) {}
  // Maps the places that messages name. Without it messages name places in the page itself.
  void origin(PlaceOrigin origin) { origin_ = std::move(origin); }

  void add(TextRow row, const PagePlace& place, std::string_view element, std::string_view other = {});
  // Says how many messages were left out beyond the limit.
  void finish();

  // The name as messages show it: a name of the table in the table's spelling, any other in capital letters.
  std::string name_of_element(Tag tag, int listed) const;

 private:
  const TagTable& table_;
  MessageList& messages_;
  PlaceOrigin origin_;
  std::uint64_t untold_ = 0;
};

}  // namespace kavo
