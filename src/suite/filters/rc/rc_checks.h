// Checks the translation of a resource script for conflicts of access keys and of printf markers, and reports them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/filter.h"
#include "suite/filters/rc/rc_text_place.h"

namespace kavo::rc {

class RcChecks {
 public:
  explicit RcChecks(MessageTaker tell) : tell_(std::move(tell)) {}
  // Takes the segments in the order of the script, changed or not. `coding` is the coding of the segment's own bytes.
  void see(const Hole& hole, std::string_view translation, const TextCoding& coding);

 private:
  struct Key {
    std::string in_source;
    std::u16string place;
  };
  void check_markers(const Hole& hole, const std::vector<std::string>& wanted, const std::vector<std::string>& found);
  void check_key(const Hole& hole, const RcTextPlace& place, std::string_view plain);
  void tell(const Hole& hole, const std::string& text) const;

  MessageTaker tell_;
  std::uint32_t dialog_ = 0;
  std::map<std::string, Key> keys_;  // of the dialog
};

}  // namespace kavo::rc
