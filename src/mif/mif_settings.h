// The options of MIF work as they are stored for the user, each a program setting of its own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavo {

inline constexpr std::u16string_view kDefaultMifMarkers = u"Index\t";  // names, each with a tab behind it

struct MifSettings {
  std::int16_t split = 0;
  bool objects = true;
  std::u16string markers;
};

// Each throws `failure` when the registry refuses. Reading gives the default of a value that is not stored.
MifSettings load_mif_settings();
void store_mif_split(std::int16_t split);
void store_mif_objects(bool objects);
void store_mif_markers(std::u16string_view markers);

// Stores all three, but leaves alone a stored value that `loaded` already has: another program may have changed it
// since.
void store_mif_settings(const MifSettings& now, const MifSettings& loaded);

}  // namespace kavo
