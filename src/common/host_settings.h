// Settings in the user's hive of the registry that hosts and their editor share with us.
#pragma once

#include <string_view>

namespace kavo {

// The editor's: the languages asked for last, the colours of segments.
inline constexpr std::u16string_view kEditorKey = u"Software\\MOR\\MOR Edit\\Settings";

// Which font map the filters of Word documents and RTF read, and whether they do.
inline constexpr std::u16string_view kFontMapKey = u"Software\\MOR\\KAVO";
inline constexpr std::u16string_view kFontMapFile = u"RTFFontMapFile";         // path
inline constexpr std::u16string_view kAllowFontMapping = u"AllowFontMapping";  // 1: the map is read

}  // namespace kavo
