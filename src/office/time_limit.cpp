#include "office/time_limit.h"

#include <charconv>
#include <string>

#include "common/program_settings.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kTimeLimit = u"TimeLimit";
// Opening and saving, which are one call each, take far less than this even on a busy machine.
constexpr double kSeconds = 60;
constexpr double kSecondsOfMegabyte = 30;
constexpr double kMegabyte = 1'000'000;

}  // namespace

std::optional<std::int32_t> stored_time_limit() {
  const std::string text = to_utf8(kOfficeSettings.get(kTimeLimit));
  std::int32_t seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool is_valid = error == std::errc() && end == text.data() + text.size();
  if (!is_valid || seconds < 1 || seconds > kLongestTimeLimit) return std::nullopt;
  return seconds;
}

void store_time_limit(std::optional<std::int32_t> seconds) {
  kOfficeSettings.save(kTimeLimit, seconds ? to_utf16(std::to_string(*seconds)) : u"");
}

double time_limit_for(std::u16string_view document) {
  if (const auto seconds = stored_time_limit()) return *seconds;
  const auto info = ports().files->info(document);
  return kSeconds + kSecondsOfMegabyte * (info ? static_cast<double>(info->size) : 0) / kMegabyte;
}

}  // namespace kavo
