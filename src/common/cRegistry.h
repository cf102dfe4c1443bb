// The registry through properties: set the place (ClassKey, SectionKey, ValueKey), then read or write the value.
//
// Reading never fails: a value that is missing, damaged or out of reach reads as `Default`. All other operations throw
// the `failure` of the registry port; writing throws 13 for a value that does not suit `ValueType` and 5 for a type
// that cannot be written.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/automation.h"
#include "platform/registry.h"

namespace kavo {

class cRegistry {
 public:
  // A registry value: text, 32-bit number, bytes, list of texts, or nothing.
  using Variant = std::variant<Empty, std::u16string, std::int32_t, std::string, std::vector<std::u16string>>;
  struct Verb {
    std::u16string name, text, command;
  };

  bool KeyExists() const;
  void CreateKey() const;
  void DeleteKey() const;
  void DeleteValue() const;
  Variant Value() const;
  void SetValue(const Variant& value) const;
  void Value(const Variant& value) const { SetValue(value); }
  // Each replaces `names` and sets `count` to their number. A missing key has none.
  void EnumerateValues(std::vector<std::u16string>& names, std::int32_t& count) const;
  void EnumerateSections(std::vector<std::u16string>& names, std::int32_t& count) const;
  // Registers a program for a file name extension (without its dot) under HKEY_CLASSES_ROOT and, for the whole
  // machine, under HKEY_LOCAL_MACHINE; an empty text gives the usual one ("&Open" ...).
  void CreateEXEAssociation(std::u16string_view executable, std::u16string_view class_name,
                            std::u16string_view description, std::u16string_view extension,
                            std::u16string_view open_text, bool print, std::u16string_view print_text, bool add_new,
                            std::u16string_view new_text, bool install, std::u16string_view install_text,
                            std::int32_t icon_index) const;
  void CreateAdditionalEXEAssociations(std::u16string_view class_name, std::span<const Verb> verbs) const;

  std::uint32_t ClassKey() const { return static_cast<std::uint32_t>(hive_); }
  void ClassKey(std::uint32_t value) { hive_ = static_cast<Hive>(value); }
  const std::u16string& SectionKey() const { return section_; }
  void SectionKey(std::u16string_view value) { section_ = value; }
  const std::u16string& ValueKey() const { return name_; }
  void ValueKey(std::u16string_view value) { name_ = value; }
  std::uint32_t ValueType() const { return static_cast<std::uint32_t>(type_); }
  void ValueType(std::uint32_t value) { type_ = static_cast<RegistryType>(value); }
  const Variant& Default() const { return default_; }
  void Default(Variant value) { default_ = std::move(value); }

 private:
  // Writes the default value of a class key in both places where classes are registered.
  void SetClassValue(std::u16string_view key, std::u16string_view value) const;

  Hive hive_ = Hive::kCurrentUser;
  std::u16string section_;
  std::u16string name_;
  RegistryType type_ = RegistryType::kString;
  Variant default_;
};

}  // namespace kavo
