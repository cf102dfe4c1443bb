// Helpers for every class of the library: file names, text replacement, INI settings, safe deleting and moving. It
// keeps no state, so each class creates one when needed.
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

  // Settings of an INI file; without a file name, of the library's own ("K19FPW.ini", where the system looks for such
  // files). A missing key gives the default; a value is cut at 1023 characters. A failure to write is ignored.
  std::u16string GetINISetting(std::u16string_view section, std::u16string_view key, std::u16string_view default_value,
                               std::optional<std::u16string_view> ini_file = std::nullopt) const;
  void SetINISetting(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                     std::optional<std::u16string_view> ini_file = std::nullopt) const;

  // Selects the whole text of the box.
  void HighLight(TextBoxFrame& box) const;

  // Starts the system's information program, or shows a message that there is none.
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

  // Replaces `destination` with `source`. At every moment one of the two is whole. When that fails, the result is
  // false, `errors` (if given) gets an entry, and both files are as they were. A source that was copied from another
  // volume and cannot be removed also gives an entry, but the result is true: the document is in its place.
  bool MoveFile(std::u16string_view source, std::u16string_view destination, MessageList* errors = nullptr) const;

  // The text, shortened to `width` characters by putting "...." in place of its middle.
  std::u16string SetCaption(std::u16string_view text, std::size_t width) const;

  // Replaces every %n% (n from 1 to 6) with values[n - 1], or with "" when there are fewer values. Throws `failure` 5
  // when a value brings its own placeholder back, which would never end.
  std::u16string FormatString(std::u16string_view format, std::span<const std::u16string> values) const;

  // Deletes a file, read-only or not. Failures are ignored; where it matters, the caller checks with FileExists.
  void DeleteFile(std::u16string_view file_name) const;

  // True when anything matches the name, which may contain wildcards; a folder counts, too. False when the search
  // fails.
  bool FileExists(std::u16string_view file_name) const;
};

// Caption of the foreground window, "*" when there is none.
std::u16string ForegroundCaption();

}  // namespace kavo
