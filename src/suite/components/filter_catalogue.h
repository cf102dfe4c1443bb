// K19Suite.FilterCatalogue: the format filters of the suite, and the conversions that they do.
#pragma once

#include "common/progress_event.h"
#include "platform/automation.h"
#include "suite/filters/filter.h"

namespace kavo {

// Members: Enumerate, Convert, ConvertInSet, CreateTarget, Messages and Settings, as docs/suite-interface.md describes
// them.
class FilterCatalogue final : public TableObject {
 public:
  FilterCatalogue();
  // Ends the Office programs that its conversions have started.
  ~FilterCatalogue() override;

 private:
  Value convert(std::span<Argument> arguments);
  Value convert_in_set(std::span<Argument> arguments);
  Value create(std::span<Argument> arguments);
  // Forgets the messages of the last conversion and takes those of the next one.
  MessageTaker new_messages();

  ProgressEvent progress_;  // has no handler; it only lets the host process its messages
  std::u16string messages_;
};

}  // namespace kavo
