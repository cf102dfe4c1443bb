// A registry in memory. The native adapter keeps one in a file; tests use it as it is.
#pragma once

#include <map>
#include <memory>

#include "platform/case_fold.h"
#include "platform/registry.h"

namespace kavo {

// One key: the keys below it and its values. Names keep their case and ignore it when they are looked up.
struct RegistryKey {
  std::map<std::u16string, std::unique_ptr<RegistryKey>, LessIgnoringCase> keys;
  std::map<std::u16string, RegistryData, LessIgnoringCase> values;
};

// As on Windows, a hive always exists, and HKEY_CLASSES_ROOT shows "Software\Classes" of the machine.
class RegistryTree : public Registry {
 public:
  bool key_exists(Hive hive, std::u16string_view path) override;
  void create_key(Hive hive, std::u16string_view path) override;
  // 53 for a missing key, 70 for one with keys below it (or a hive itself).
  void delete_key(Hive hive, std::u16string_view path) override;
  // 53 for a missing key or value.
  void delete_value(Hive hive, std::u16string_view path, std::u16string_view name) override;
  std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) override;
  void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) override;
  std::vector<std::u16string> sub_keys(Hive hive, std::u16string_view path) override;
  std::vector<std::u16string> value_names(Hive hive, std::u16string_view path) override;

  RegistryKey& current_user() { return current_user_; }
  RegistryKey& local_machine() { return local_machine_; }

 private:
  RegistryKey* find(Hive hive, std::u16string_view path);
  RegistryKey& make(Hive hive, std::u16string_view path);

  RegistryKey current_user_;
  RegistryKey local_machine_;
};

}  // namespace kavo
