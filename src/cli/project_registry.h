// The registry of a run in a project. What the project sets has precedence over what the user has stored. Everything
// else is read from and written to the user's registry.
#pragma once

#include "platform/registry_tree.h"

namespace kavo {

class ProjectRegistry final : public RegistryTree {
 public:
  // The user's registry must outlive the object. What is written before close() belongs to the project.
  explicit ProjectRegistry(Registry& users) : users_(users) {}
  void close() { is_closed_ = true; }

  bool key_exists(Hive hive, std::u16string_view path) override {
    return RegistryTree::key_exists(hive, path) || users_.key_exists(hive, path);
  }
  void create_key(Hive hive, std::u16string_view path) override {
    is_closed_ ? users_.create_key(hive, path) : RegistryTree::create_key(hive, path);
  }
  void delete_key(Hive hive, std::u16string_view path) override { users_.delete_key(hive, path); }
  void delete_value(Hive hive, std::u16string_view path, std::u16string_view name) override {
    users_.delete_value(hive, path, name);
  }
  std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) override {
    auto projects = RegistryTree::read(hive, path, name);
    return projects ? projects : users_.read(hive, path, name);
  }
  void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) override {
    is_closed_ ? users_.write(hive, path, name, data) : RegistryTree::write(hive, path, name, data);
  }
  std::vector<std::u16string> sub_keys(Hive hive, std::u16string_view path) override {
    return users_.sub_keys(hive, path);
  }
  std::vector<std::u16string> value_names(Hive hive, std::u16string_view path) override {
    return users_.value_names(hive, path);
  }

 private:
  Registry& users_;
  bool is_closed_ = false;
};

}  // namespace kavo
