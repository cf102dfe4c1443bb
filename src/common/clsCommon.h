// The helper that every class of the library creates when it needs it: file names, text replacement, INI settings,
// safe deleting and moving. It keeps no state.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/form_frame.h"
#include "common/messages.h"

namespace kavo {

class clsCommon {
 public:
  // Moves the form to the middle of the screen.
  void CentreForm(FormFrame& form) const;

  // Settings of an INI file; without a file name that of the library ("K19FPW.ini", where the system looks for such
  // files). A missing key gives the default; a value is cut at 1023 characters.
  std::u16string GetINISetting(std::u16string_view section, std::u16string_view key, std::u16string_view default_value,
                               std::optional<std::u16string_view> ini_file = std::nullopt) const;
  void SetINISetting(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                     std::optional<std::u16string_view> ini_file = std::nullopt) const;

  // Selects the whole text of the box.
  void HighLight(TextBoxFrame& box) const;

  // Starts the system's information program, or says that there is none.
  void StartSysInfo() const;

  // A registry value as text; a value written as "&h1F" becomes the decimal text of that number. Nothing when the key
  // or the value is missing.
  std::optional<std::u16string> GetKeyValue(std::uint32_t hive, std::u16string_view path,
                                            std::u16string_view name) const;

  // True when a form of exactly this name is loaded.
  bool IsLoaded(std::u16string_view form_name) const;

  // Replaces every occurrence, left to right, never searching a replacement again. Throws `failure` 6 for a match
  // beyond position 32,767: positions are 16-bit on purpose, hosts rely on the limit.
  std::u16string SandR(std::u16string_view text, std::u16string_view search, std::u16string_view replacement) const;

  // Mode 0: folder with its "\"; 1: base name; 2: extension without its dot; else "". Throws `failure` 6 when a
  // separator lies beyond position 32,767 (16-bit positions, as in SandR).
  std::u16string strParseFileName(std::u16string_view file_name, std::int16_t mode) const;

  // Puts `source` in the place of `destination` without a moment at which neither is whole. False, with an entry in
  // `errors` when given, when it failed; both files are then as they were. A source that was copied from another
  // volume and cannot be removed is an entry, but no failure: the destination holds the document.
  bool MoveFile(std::u16string_view source, std::u16string_view destination, MessageList* errors = nullptr) const;

  // The text, shortened to `width` characters by putting "...." in place of its middle.
  std::u16string SetCaption(std::u16string_view text, std::size_t width) const;

  // Puts values[n - 1] in the place of every %n% (n from 1 to 6), "" when there are fewer values. Throws `failure` 5
  // when a value brings its own placeholder back, which would never end.
  std::u16string FormatString(std::u16string_view format, std::span<const std::u16string> values) const;

  // Deletes a file, read-only or not; failures are ignored, the caller checks with FileExists where it matters.
  void DeleteFile(std::u16string_view file_name) const;

  // True when anything of that name, or matching its wildcards, is found: a folder counts too.
  bool FileExists(std::u16string_view file_name) const;
};

// Caption of the foreground window, "*" when there is none.
std::u16string ForegroundCaption();

}  // namespace kavo
