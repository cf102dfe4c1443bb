#include "platform/registry_tree.h"

#include "platform/failure.h"
#include "platform/formatted.h"

namespace kavo {
namespace {

std::vector<std::u16string> components(Hive hive, std::u16string_view path) {
  std::vector<std::u16string> names;
  if (hive == Hive::kClassesRoot) names = {u"Software", u"Classes"};
  while (!path.empty()) {
    const std::u16string_view name = path.substr(0, path.find(u'\\'));
    if (!name.empty()) names.emplace_back(name);
    path.remove_prefix(std::min(path.size(), name.size() + 1));
  }
  return names;
}

[[noreturn]] void throw_missing(std::u16string_view path) {
  throw failure(FailureNumber::kFileNotFound,
                formatted(u"The registry key \"{}\", or the value in it, does not exist", path));
}

}  // namespace

RegistryKey* RegistryTree::find(Hive hive, std::u16string_view path) {
  RegistryKey* key = hive == Hive::kCurrentUser ? &current_user_ : &local_machine_;
  for (const std::u16string& name : components(hive, path)) {
    const auto next = key->keys.find(name);
    if (next == key->keys.end()) return nullptr;
    key = next->second.get();
  }
  return key;
}

RegistryKey& RegistryTree::make(Hive hive, std::u16string_view path) {
  RegistryKey* key = hive == Hive::kCurrentUser ? &current_user_ : &local_machine_;
  for (std::u16string& name : components(hive, path)) {
    std::unique_ptr<RegistryKey>& next = key->keys[std::move(name)];
    if (!next) next = std::make_unique<RegistryKey>();
    key = next.get();
  }
  return *key;
}

bool RegistryTree::key_exists(Hive hive, std::u16string_view path) { return find(hive, path) != nullptr; }

void RegistryTree::create_key(Hive hive, std::u16string_view path) { make(hive, path); }

void RegistryTree::delete_key(Hive hive, std::u16string_view path) {
  const RegistryKey* key = find(hive, path);
  if (!key) throw_missing(path);
  const std::vector<std::u16string> names = components(hive, path);
  if (components(hive, u"").size() == names.size() || !key->keys.empty())
    throw failure(FailureNumber::kPermissionDenied,
                  formatted(u"The registry key \"{}\" has keys below it: delete those first", path));
  RegistryKey* parent = hive == Hive::kCurrentUser ? &current_user_ : &local_machine_;
  for (std::size_t i = 0; i + 1 < names.size(); ++i) parent = parent->keys.find(names[i])->second.get();
  parent->keys.erase(names.back());
}

void RegistryTree::delete_value(Hive hive, std::u16string_view path, std::u16string_view name) {
  RegistryKey* key = find(hive, path);
  if (!key || key->values.erase(std::u16string(name)) == 0) throw_missing(path);
}

std::optional<RegistryData> RegistryTree::read(Hive hive, std::u16string_view path, std::u16string_view name) {
  const RegistryKey* key = find(hive, path);
  if (!key) return std::nullopt;
  const auto found = key->values.find(name);
  return found == key->values.end() ? std::nullopt : std::optional(found->second);
}

void RegistryTree::write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) {
  make(hive, path).values[std::u16string(name)] = data;
}

std::vector<std::u16string> RegistryTree::sub_keys(Hive hive, std::u16string_view path) {
  std::vector<std::u16string> names;
  if (const RegistryKey* key = find(hive, path))
    for (const auto& [name, below] : key->keys) names.push_back(name);
  return names;
}

std::vector<std::u16string> RegistryTree::value_names(Hive hive, std::u16string_view path) {
  std::vector<std::u16string> names;
  if (const RegistryKey* key = find(hive, path))
    for (const auto& [name, data] : key->values) names.push_back(name);
  return names;
}

}  // namespace kavo
