#include "driver/font_mapping.h"

#include <variant>

#include "common/cRegistry.h"
#include "common/host_settings.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

cRegistry value_of(std::u16string_view name, RegistryType type) {
  cRegistry value;
  value.SectionKey(kFontMapKey);
  value.ValueKey(name);
  value.ValueType(static_cast<std::uint32_t>(type));
  return value;
}

template <class Type>
Type stored(std::u16string_view name) {
  const cRegistry::Variant value = value_of(name, RegistryType::kNone).Value();
  const auto* const found = std::get_if<Type>(&value);
  return found != nullptr ? *found : Type();
}

void write_map(const std::u16string& map) { value_of(kFontMapFile, RegistryType::kString).SetValue(map); }
void write_mapping(std::int32_t mapping) { value_of(kAllowFontMapping, RegistryType::kNumber).SetValue(mapping); }

bool reads_font_map(std::u16string_view format) {
  const std::u16string upper = ascii_upper(format);
  return upper == u"RTF" || upper == u"DOC";
}

}  // namespace

template <class Write>
void FontMapping::attempt(Write&& write) const {
  try {
    write();
  } catch (const failure& reason) {
    if (is_needed_) throw;
  }
}

FontMapping::FontMapping(const std::u16string& map, std::u16string_view source_format)
    : map_(map),
      old_map_(stored<std::u16string>(kFontMapFile)),
      old_mapping_(stored<std::int32_t>(kAllowFontMapping)),
      is_needed_(reads_font_map(source_format)) {
  attempt([&] {
    write_map(map_);
    write_mapping(1);
  });
}

void FontMapping::restore() const {
  attempt([&] {
    write_map(old_map_);
    write_map(map_);
    write_mapping(old_mapping_);
  });
}

}  // namespace kavo
