// This system has no automation, so only the program's own table of factories is asked.
#include "platform/automation.h"

#include "platform/adapters.h"
#include "platform/failure.h"

namespace kavo {
namespace {

class PosixAutomation final : public Automation {
 public:
  ObjectRef create(std::u16string_view programmatic_identifier) override {
    if (const ObjectFactory factory = find_factory(programmatic_identifier)) return factory();
    throw failure(FailureNumber::kCannotCreateObject,
                  std::u16string(programmatic_identifier) + u": no such component (class not registered)");
  }

  ObjectRef active_object(std::u16string_view programmatic_identifier) override {
    throw failure(FailureNumber::kCannotCreateObject,
                  std::u16string(programmatic_identifier) + u": no such component is running");
  }

  ObjectRef bind_to_file(std::u16string_view path) override {
    throw failure(FailureNumber::kCannotBindToFile, std::u16string(path) + u": no component opens this file");
  }
};

}  // namespace

Automation& system_automation() {
  static PosixAutomation automation;
  return automation;
}

AutomationSession::AutomationSession() = default;
AutomationSession::~AutomationSession() = default;

}  // namespace kavo
