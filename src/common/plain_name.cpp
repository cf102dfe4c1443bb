#include "common/plain_name.h"

#include <algorithm>
#include <string>

#include "platform/unicode.h"

namespace kavo {
namespace {

std::string_view without_end(std::string_view text, std::string_view ignored) {
  return text.substr(0, text.find_last_not_of(ignored) + 1);
}

// The name of a device is reserved in every folder, with any extension and with blanks after it.
bool is_device(std::string_view name) {
  std::string base(without_end(name.substr(0, name.find('.')), " "));
  std::ranges::transform(base, base.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  constexpr std::string_view kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
  if (std::ranges::find(kDevices, base) != std::end(kDevices)) return true;
  constexpr std::string_view kPorts[] = {"COM", "LPT"};
  constexpr std::string_view kNumbers[] = {
      "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};  // superscripts count, too
  const std::string_view port = std::string_view(base).substr(0, 3);
  return std::ranges::find(kPorts, port) != std::end(kPorts) &&
         std::ranges::find(kNumbers, std::string_view(base).substr(3)) != std::end(kNumbers);
}

}  // namespace

std::string_view plain_name_problem(std::string_view name) {
  if (name.empty()) return "it is empty";
  if (name.find_first_of("/\\") != name.npos) return "it names a folder";
  if (name.find(':') != name.npos) return "it names a drive or a stream";
  // Some systems drop dots and blanks at the end, so that ".. " means "..".
  if (without_end(name, ". ").empty()) return "it names a folder";
  if (std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }))
    return "it contains a control character";
  if (is_device(name)) return "it names a device";
  return {};
}

}  // namespace kavo
