// Per-user program settings: application, section, key, text. They are where VBA's GetSetting looks for them
// (HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>), so that macros can read them, too.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// One section of the settings. The names must outlive it.
struct SettingsSection {
  std::u16string_view application;
  std::u16string_view name;

  // The value; the default when the setting is missing or not a text. Throws `failure` when the registry cannot be
  // read, as does has().
  std::u16string get(std::u16string_view key, std::u16string_view default_value = {}) const;
  // Throws `failure` when the registry refuses.
  void save(std::u16string_view key, std::u16string_view value) const;
  bool has(std::u16string_view key) const;
};

// The sections of this program; those of filters are named by their options (suite/filters/filter_options.h).
inline constexpr SettingsSection kWizardSettings = {u"KAVO", u"K19FPW"};
inline constexpr SettingsSection kLanguageDialogSettings = {u"KAVO", u"TW"};
inline constexpr SettingsSection kExcelSettings = {u"KAVO", u"Excel"};
inline constexpr SettingsSection kOfficeSettings = {u"KAVO", u"Office"};
inline constexpr SettingsSection kEditorSettings = {u"KAVO", u"Editor"};
inline constexpr SettingsSection kPageSettings = {u"KAVO", u"Pages"};
inline constexpr SettingsSection kMifSettings = {u"MIF Utilities", u"Settings"};

}  // namespace kavo
