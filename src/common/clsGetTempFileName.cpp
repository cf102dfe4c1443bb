#include "common/clsGetTempFileName.h"

#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

constexpr int kMostAttempts = 1000;

std::u16string system_temporary_folder() {
  std::u16string folder;
  for (int attempt = 0; attempt < kMostAttempts && folder.empty(); ++attempt) {
    try {
      folder = ports().files->temporary_folder();
    } catch (const failure&) {
      // Asks again. If no call succeeds, the fallback below is used.
    }
  }
  if (folder.empty()) folder = u"C:\\";
  if (folder.back() != u'\\') folder += u'\\';
  return folder;
}

bool exists(std::u16string_view name) {
  try {
    return ports().files->info(name).has_value();
  } catch (const failure&) {
    return true;  // unknown, so treated as taken
  }
}

}  // namespace

clsGetTempFileName::clsGetTempFileName() : folder_(system_temporary_folder()), random_(ports().clock->seed()) {}

std::u16string clsGetTempFileName::Filename() {
  constexpr std::u16string_view digits = u"0123456789ABCDEF";
  for (int attempt = 1; attempt <= kMostAttempts; ++attempt) {
    const auto number = static_cast<std::uint16_t>(random_() >> 48);
    std::u16string name = folder_ + u"MOR";
    for (int shift = 12; shift >= 0; shift -= 4) name += digits[(number >> shift) & 15];
    name += u".TMP";
    // Not FileExists, which reads the whole folder: it may be full of such names.
    if (!exists(name)) return name;
  }
  return folder_ + u"MOR0000.TMP";
}

}  // namespace kavo
