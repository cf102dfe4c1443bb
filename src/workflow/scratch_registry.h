// A registry for work on copies: it shows the user's settings and keeps changes in memory.
#pragma once

#include "platform/registry_tree.h"

namespace kavo {

// Only values that were written here can be deleted or listed.
class ScratchRegistry final : public RegistryTree {
 public:
  // The user's registry must outlive the object.
  explicit ScratchRegistry(Registry& users) : users_(users) {}

  bool key_exists(Hive hive, std::u16string_view path) override {
    return RegistryTree::key_exists(hive, path) || users_.key_exists(hive, path);
  }
  std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) override {
    auto written = RegistryTree::read(hive, path, name);
    return written ? written : users_.read(hive, path, name);
  }

 private:
  Registry& users_;
};

}  // namespace kavo
