#include "mif/mif_settings.h"

#include "common/leading_number.h"
#include "common/program_settings.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kApplication = u"MIF Utilities";
constexpr std::u16string_view kSection = u"Settings";
constexpr std::u16string_view kSplit = u"Split";
constexpr std::u16string_view kObjects = u"Objects";
constexpr std::u16string_view kMarkers = u"Markers";
constexpr std::u16string_view kDefaultMarkers = u"Index\t";

std::u16string load(std::u16string_view key, std::u16string_view default_value) {
  return get_setting(kApplication, kSection, key, default_value);
}
void store(std::u16string_view key, std::u16string_view value) { save_setting(kApplication, kSection, key, value); }

// What no setting holds.
constexpr std::u16string_view kNothing(u"\0", 1);
bool is_stored(std::u16string_view key) { return load(key, kNothing) != kNothing; }

// The decimal number that a setting begins with; 0 when it begins with none or with one that does not fit.
std::int16_t number_of(std::u16string_view text) {
  const std::int32_t number = leading_number(text);
  return number < -INT16_MAX || number > INT16_MAX ? std::int16_t{0} : static_cast<std::int16_t>(number);
}

}  // namespace

MifSettings load_mif_settings() {
  return {number_of(load(kSplit, u"0")), load(kObjects, u"1") == u"1", load(kMarkers, kDefaultMarkers)};
}

void store_mif_split(std::int16_t split) { store(kSplit, to_utf16(std::to_string(split))); }
void store_mif_objects(bool objects) { store(kObjects, objects ? u"1" : u"0"); }
void store_mif_markers(std::u16string_view markers) { store(kMarkers, markers); }

void store_mif_settings(const MifSettings& now, const MifSettings& loaded) {
  if (now.split != loaded.split || !is_stored(kSplit)) store_mif_split(now.split);
  if (now.objects != loaded.objects || !is_stored(kObjects)) store_mif_objects(now.objects);
  if (now.markers != loaded.markers || !is_stored(kMarkers)) store_mif_markers(now.markers);
}

}  // namespace kavo
