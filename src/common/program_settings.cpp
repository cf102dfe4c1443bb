#include "common/program_settings.h"

#include "common/registry_text.h"
#include "platform/ports.h"

namespace kavo {
namespace {

std::u16string key_of(std::u16string_view application, std::u16string_view section) {
  std::u16string path = u"Software\\VB and VBA Program Settings\\";
  path += application;
  path += u'\\';
  path += section;
  return path;
}

}  // namespace

std::u16string get_setting(std::u16string_view application, std::u16string_view section, std::u16string_view key,
                           std::u16string_view default_value) {
  const auto data = ports().registry->read(Hive::kCurrentUser, key_of(application, section), key);
  if (!data || data->type != RegistryType::kString) return std::u16string(default_value);
  return registry_text(*data);
}

void save_setting(std::u16string_view application, std::u16string_view section, std::u16string_view key,
                  std::u16string_view value) {
  ports().registry->write(Hive::kCurrentUser, key_of(application, section), key, registry_string(value));
}

}  // namespace kavo
