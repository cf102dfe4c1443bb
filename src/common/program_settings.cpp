#include "common/program_settings.h"

#include <optional>

#include "common/registry_text.h"
#include "platform/ports.h"

namespace kavo {
namespace {

std::u16string key_of(const SettingsSection& section) {
  std::u16string path = u"Software\\VB and VBA Program Settings\\";
  path += section.application;
  path += u'\\';
  path += section.name;
  return path;
}

std::optional<std::u16string> stored(const SettingsSection& section, std::u16string_view key) {
  const auto data = ports().registry->read(Hive::kCurrentUser, key_of(section), key);
  if (!data || data->type != RegistryType::kString) return std::nullopt;
  return registry_text(*data);
}

}  // namespace

std::u16string SettingsSection::get(std::u16string_view key, std::u16string_view default_value) const {
  return stored(*this, key).value_or(std::u16string(default_value));
}

void SettingsSection::save(std::u16string_view key, std::u16string_view value) const {
  ports().registry->write(Hive::kCurrentUser, key_of(*this), key, registry_string(value));
}

bool SettingsSection::has(std::u16string_view key) const { return stored(*this, key).has_value(); }

}  // namespace kavo
