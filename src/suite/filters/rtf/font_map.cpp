#include "suite/filters/rtf/font_map.h"

#include <algorithm>
#include <charconv>
#include <variant>

#include "common/block_reader.h"
#include "common/cRegistry.h"
#include "common/host_settings.h"
#include "formats/text/ascii.h"
#include "platform/ports.h"
#include "platform/trimmed.h"

namespace kavo::rtf {
namespace {

constexpr std::size_t kLongestMap = 1024 * 1024;  // bytes; nobody writes more by hand

constexpr std::string_view kWhiteSpace = " \t\r";

bool is_same_name(std::string_view first, std::string_view second) {
  return std::ranges::equal(first, second, [](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace

FontMap::FontMap(std::string_view file) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (file.starts_with(mark)) file.remove_prefix(mark.size());
  while (!file.empty()) {
    const std::size_t end = std::min(file.find('\n'), file.size());
    const std::string_view line = trimmed(file.substr(0, end), kWhiteSpace);
    file.remove_prefix(std::min(end + 1, file.size()));
    const std::size_t sign = line.find('=');
    if (line.empty() || line.front() == ';' || line.front() == '#' || sign == line.npos) continue;
    MappedFont font;
    font.source = trimmed(line.substr(0, sign), kWhiteSpace);
    const std::string_view target = line.substr(sign + 1);
    const std::size_t comma = std::min(target.find(','), target.size());
    font.target = trimmed(target.substr(0, comma), kWhiteSpace);
    const std::string_view charset = trimmed(target.substr(std::min(comma + 1, target.size())), kWhiteSpace);
    std::from_chars(charset.data(), charset.data() + charset.size(), font.charset);
    // A name with one of these characters would end early in a font table.
    if (font.source.empty() || font.target.empty() || font.target.find_first_of("\\{};") != std::string::npos) continue;
    fonts_.push_back(std::move(font));
  }
}

const MappedFont* FontMap::find(std::string_view font) const {
  const auto found =
      std::ranges::find_if(fonts_, [&](const MappedFont& mapped) { return is_same_name(mapped.source, font); });
  return found == fonts_.end() ? nullptr : &*found;
}

FontMap FontMap::from_settings() {
  const auto stored = [](std::u16string_view name) {
    cRegistry value;
    value.SectionKey(kFontMapKey);
    value.ValueKey(name);
    value.ValueType(static_cast<std::uint32_t>(RegistryType::kNone));
    return value.Value();
  };
  const cRegistry::Variant is_allowed = stored(kAllowFontMapping);
  const auto* const allowed = std::get_if<std::int32_t>(&is_allowed);
  if (!allowed || *allowed != 1) return {};
  const cRegistry::Variant file = stored(kFontMapFile);
  const auto* const path = std::get_if<std::u16string>(&file);
  if (!path || path->empty()) return {};
  const auto info = ports().files->info(*path);
  if (!info || info->is_folder) return {};
  BlockReader reader(*path);
  while (reader.window().size() < kLongestMap && reader.more()) {
  }
  return FontMap(reader.window());
}

}  // namespace kavo::rtf
