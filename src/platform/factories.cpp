// The table of components that this process brings itself.
#include <map>
#include <mutex>
#include <utility>

#include "platform/automation.h"
#include "platform/case_fold.h"

namespace kavo {
namespace {

struct FactoryTable {
  std::mutex mutex;
  std::map<std::u16string, ObjectFactory, LessIgnoringCase> factories;
};

FactoryTable& factory_table() {
  static FactoryTable table;
  return table;
}

}  // namespace

void register_factory(std::u16string_view programmatic_identifier, ObjectFactory factory) {
  FactoryTable& table = factory_table();
  const std::lock_guard lock(table.mutex);
  if (factory)
    table.factories.insert_or_assign(std::u16string(programmatic_identifier), std::move(factory));
  else
    table.factories.erase(std::u16string(programmatic_identifier));
}

ObjectFactory find_factory(std::u16string_view programmatic_identifier) {
  FactoryTable& table = factory_table();
  const std::lock_guard lock(table.mutex);
  const auto found = table.factories.find(programmatic_identifier);
  return found == table.factories.end() ? ObjectFactory() : found->second;
}

}  // namespace kavo
