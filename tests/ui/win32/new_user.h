// The user's settings as a new user has them.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo::test {

// Removes what the dialogs remember, and restores the user's own settings at the end.
class NewUser {
 public:
  NewUser() {
    for (const auto& [key, name] : kValues) {
      saved_.push_back(ports().registry->read(Hive::kCurrentUser, key, name));
      remove(key, name);
    }
  }
  ~NewUser() {
    for (std::size_t i = 0; i < saved_.size(); ++i) {
      const auto& [key, name] = kValues[i];
      remove(key, name);
      if (saved_[i]) ports().registry->write(Hive::kCurrentUser, key, name, *saved_[i]);
    }
  }
  NewUser(const NewUser&) = delete;
  NewUser& operator=(const NewUser&) = delete;

 private:
  struct ValuePlace {
    std::u16string_view key;
    std::u16string_view name;
  };
  static constexpr std::u16string_view kMif = u"Software\\VB and VBA Program Settings\\MIF Utilities\\Settings";
  static constexpr std::u16string_view kExcel = u"Software\\VB and VBA Program Settings\\KAVO\\Excel";
  static constexpr std::u16string_view kPicker = u"Software\\VB and VBA Program Settings\\KAVO\\TW";
  static constexpr std::u16string_view kEditor = u"Software\\VB and VBA Program Settings\\KAVO\\Editor";
  static constexpr std::u16string_view kWizard = u"Software\\VB and VBA Program Settings\\KAVO\\K19FPW";
  static constexpr std::u16string_view kLanguages = u"Software\\MOR\\MOR Edit\\Settings";
  static constexpr ValuePlace kValues[] = {
      {kMif, u"Split"},
      {kMif, u"Objects"},
      {kMif, u"Markers"},
      {kExcel, u"Order"},
      {kExcel, u"Hidden"},
      {kExcel, u"Formulas"},
      {kExcel, u"Ungroup"},
      {kExcel, u"Tolerance"},
      {kPicker, u"ShowCharset"},
      {kEditor, u"Command"},
      {kWizard, u"InitDir"},
      {kWizard, u"LastTM"},
      {kLanguages, u"DefSourceLanguage"},
      {kLanguages, u"DefTransLanguage"},
      {kLanguages, u"DefSourceEncoding"},
      {kLanguages, u"DefTransEncoding"},
  };

  static void remove(std::u16string_view key, std::u16string_view name) {
    try {
      ports().registry->delete_value(Hive::kCurrentUser, key, name);
    } catch (const failure&) {
      // It is not there.
    }
  }

  std::vector<std::optional<RegistryData>> saved_;
};

}  // namespace kavo::test
