#include "driver/status_colours.h"

#include <iterator>
#include <string_view>
#include <variant>

#include "common/cRegistry.h"
#include "common/host_settings.h"

namespace kavo {
namespace {

constexpr std::u16string_view kNames[] = {u"ColourUntran", u"ColourFuzzy", u"Colour100", u"ColourTran"};
static_assert(std::size(kNames) == std::tuple_size_v<StatusColours>);

cRegistry value_of(std::size_t status) {
  cRegistry value;
  value.SectionKey(kEditorKey);
  value.ValueKey(kNames[status]);
  value.ValueType(static_cast<std::uint32_t>(RegistryType::kNumber));
  return value;
}

}  // namespace

std::optional<std::int32_t> stored_status_colour(std::size_t status) {
  const cRegistry::Variant value = value_of(status).Value();
  const auto* const number = std::get_if<std::int32_t>(&value);
  return number != nullptr ? std::optional(*number) : std::nullopt;
}

void store_status_colour(std::size_t status, std::optional<std::int32_t> colour) {
  if (colour)
    value_of(status).SetValue(*colour);
  else if (stored_status_colour(status))
    value_of(status).DeleteValue();
}

StatusColours stored_status_colours(const StatusColours& unset) {
  StatusColours colours;
  for (std::size_t i = 0; i < colours.size(); ++i) colours[i] = stored_status_colour(i).value_or(unset[i]);
  return colours;
}

}  // namespace kavo
