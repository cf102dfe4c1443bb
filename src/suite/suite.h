// The reference suite: its own versions of the components of a translation suite that the library works with. A host
// that has other components registers them under the same identifiers. The contract: docs/suite-interface.md.
#pragma once

#include <span>
#include <string_view>

#include "platform/automation.h"

namespace kavo {

// One creatable component.
struct SuiteClass {
  std::u16string_view programmatic_identifier;
  std::u16string_view description;
  ObjectRef (*create)();
};

// All components of the suite, the one list of them.
std::span<const SuiteClass> suite_classes();

// Makes them known to this process's automation port.
void register_suite_factories();

}  // namespace kavo
