// Where the user's settings say which font map the filters of Word documents and RTF read, and whether they do.
#pragma once

#include <string_view>

namespace kavo {

inline constexpr std::u16string_view kFontMapSettings = u"Software\\MOR\\KAVO";  // key of the user's hive
inline constexpr std::u16string_view kFontMapFile = u"RTFFontMapFile";           // path
inline constexpr std::u16string_view kAllowFontMapping = u"AllowFontMapping";    // 1: the map is read

}  // namespace kavo
