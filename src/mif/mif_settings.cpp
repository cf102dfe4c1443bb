#include "mif/mif_settings.h"

#include "common/leading_number.h"
#include "common/program_settings.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kSplit = u"Split";
constexpr std::u16string_view kObjects = u"Objects";
constexpr std::u16string_view kMarkers = u"Markers";

// The decimal number at the start of a setting. 0 when there is none or it does not fit.
std::int16_t number_of(std::u16string_view text) {
  const std::int32_t number = leading_number(text);
  return number < -INT16_MAX || number > INT16_MAX ? std::int16_t{0} : static_cast<std::int16_t>(number);
}

}  // namespace

MifSettings load_mif_settings() {
  return {number_of(kMifSettings.get(kSplit, u"0")), kMifSettings.get(kObjects, u"1") == u"1",
          kMifSettings.get(kMarkers, kDefaultMifMarkers)};
}

void store_mif_split(std::int16_t split) { kMifSettings.save(kSplit, formatted(u"{}", split)); }
void store_mif_objects(bool objects) { kMifSettings.save(kObjects, objects ? u"1" : u"0"); }
void store_mif_markers(std::u16string_view markers) { kMifSettings.save(kMarkers, markers); }

void store_mif_settings(const MifSettings& now, const MifSettings& loaded) {
  if (now.split != loaded.split || !kMifSettings.has(kSplit)) store_mif_split(now.split);
  if (now.objects != loaded.objects || !kMifSettings.has(kObjects)) store_mif_objects(now.objects);
  if (now.markers != loaded.markers || !kMifSettings.has(kMarkers)) store_mif_markers(now.markers);
}

}  // namespace kavo
