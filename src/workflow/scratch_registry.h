// A registry for one run. It shows the user's settings as they were when the run first asked, and keeps changes in
// memory. It is for work on copies, and for runs whose settings must not reach others.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>

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
    if (auto written = RegistryTree::read(hive, path, name)) return written;
    std::tuple value(hive, std::u16string(path), std::u16string(name));
    auto known = read_.find(value);
    if (known == read_.end()) known = read_.emplace(std::move(value), users_.read(hive, path, name)).first;
    return known->second;
  }

 private:
  Registry& users_;
  std::map<std::tuple<Hive, std::u16string, std::u16string>, std::optional<RegistryData>> read_;  // from the user's
};

}  // namespace kavo
