// K19Suite.FilterCatalogue: the format filters of the suite, and the conversions that they do.
#pragma once

#include "common/progress_event.h"
#include "platform/automation.h"

namespace kavo {

// Members: Enumerate, Convert, ConvertInSet, CreateTarget and Settings, as docs/suite-interface.md describes them.
class FilterCatalogue final : public TableObject {
 public:
  FilterCatalogue();

 private:
  ProgressEvent progress_;  // without a handler: it only lets the host process its messages
};

}  // namespace kavo
