// The MIF options as stored for the user, each as a program setting of its own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavo {

inline constexpr std::u16string_view kDefaultMifMarkers = u"Index\t";  // names, each with a tab after it

struct MifSettings {
  std::int16_t split = 0;
  bool objects = true;
  std::u16string markers;
};

// All of these throw `failure` when the registry refuses. An option that is not stored has its default.
MifSettings load_mif_settings();
void store_mif_split(std::int16_t split);
void store_mif_objects(bool objects);
void store_mif_markers(std::u16string_view markers);

// Stores all three. A stored value that `loaded` has as well is left alone: another program may have changed it since.
void store_mif_settings(const MifSettings& now, const MifSettings& loaded);

}  // namespace kavo
