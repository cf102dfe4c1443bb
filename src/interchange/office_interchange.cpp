#include "interchange/office_interchange.h"

#include <mutex>
#include <utility>

#include "platform/failure.h"

namespace kavo {
namespace {

struct Factory {
  std::mutex mutex;
  InterchangeFactory make;
};
Factory& factory() {
  static Factory known;
  return known;
}

std::unique_ptr<OfficeInterchange>& of_thread() {
  thread_local std::unique_ptr<OfficeInterchange> interchange;
  return interchange;
}

}  // namespace

void bring_office_interchange(InterchangeFactory make) {
  const std::lock_guard lock(factory().mutex);
  factory().make = std::move(make);
}

bool has_office_interchange() {
  const std::lock_guard lock(factory().mutex);
  return static_cast<bool>(factory().make);
}

OfficeInterchange& office_interchange() {
  std::unique_ptr<OfficeInterchange>& interchange = of_thread();
  if (!interchange) {
    InterchangeFactory make;
    {
      const std::lock_guard lock(factory().mutex);
      make = factory().make;
    }
    if (!make)
      throw failure(FailureNumber::kCannotCreateObject, u"This program has no component that reads Office documents");
    interchange = make();
  }
  return *interchange;
}

void release_office_interchange() noexcept { of_thread().reset(); }

}  // namespace kavo
