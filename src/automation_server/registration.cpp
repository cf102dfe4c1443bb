#include "automation_server/registration.h"

#include <string>

#include "automation_server/component_library.h"
#include "automation_server/module.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

// These two are in the import library but missing in the headers.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help_folder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID library_id, WORD major, WORD minor, LCID locale,
                                                   SYSKIND system);

namespace kavo {
namespace {

constexpr std::u16string_view kClasses = u"Software\\Classes\\";
constexpr WORD kTypeLibraryMajor = 1;
constexpr WORD kTypeLibraryMinor = 0;
constexpr LCID kTypeLibraryLocale = 1033;
constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;

Hive hive_of(RegistrationScope scope) {
  return scope == RegistrationScope::kMachine ? Hive::kLocalMachine : Hive::kCurrentUser;
}

std::u16string text_of(const GUID& id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return from_wide(text);
}

std::u16string class_key(const ComponentClass& row) {
  return std::u16string(kClasses) + u"CLSID\\" + text_of(row.class_id);
}

std::u16string identifier_key(const ComponentClass& row) {
  return std::u16string(kClasses) + std::u16string(row.programmatic_identifier);
}

RegistryData string_data(std::u16string_view text) {
  RegistryData data{RegistryType::kString, {}};
  for (const char16_t unit : text) {
    data.bytes.push_back(static_cast<char>(unit & 0xFF));
    data.bytes.push_back(static_cast<char>(unit >> 8));
  }
  data.bytes.append(2, '\0');
  return data;
}

void delete_tree(Hive hive, const std::u16string& key) {
  Registry& registry = *ports().registry;
  if (!registry.key_exists(hive, key)) return;
  // The recursion is at most as deep as the keys that register_class() writes: three levels.
  for (const std::u16string& name : registry.sub_keys(hive, key)) delete_tree(hive, formatted(u"{}\\{}", key, name));
  registry.delete_key(hive, key);
}

void check(HRESULT result) {
  if (FAILED(result)) throw failure(number_of_hresult(result), system_text(static_cast<DWORD>(result)), u"K19FPW");
}

void register_class(const ComponentClass& row, RegistrationScope scope) {
  const Hive hive = hive_of(scope);
  const std::u16string class_id = text_of(row.class_id);
  const auto write = [&](const std::u16string& key, std::u16string_view name, std::u16string_view text) {
    ports().registry->write(hive, key, name, string_data(text));
  };
  const std::u16string by_id = class_key(row);
  write(by_id, u"", row.description);
  write(by_id + u"\\InprocServer32", u"", from_wide(module_path()));
  write(by_id + u"\\InprocServer32", u"ThreadingModel", u"Apartment");
  write(by_id + u"\\ProgID", u"", row.programmatic_identifier);
  if (component_library().type_library_id != nullptr) {
    write(by_id + u"\\TypeLib", u"", text_of(*component_library().type_library_id));
    write(by_id + u"\\Version", u"", u"1.0");
  }
  const std::u16string by_name = identifier_key(row);
  write(by_name, u"", row.description);
  write(by_name + u"\\CLSID", u"", class_id);
}

void unregister_class(const ComponentClass& row, RegistrationScope scope) {
  const Hive hive = hive_of(scope);
  delete_tree(hive, class_key(row));
  const std::u16string by_name = identifier_key(row);
  const auto owner = ports().registry->read(hive, by_name + u"\\CLSID", u"");
  const bool is_ours = !owner || owner->bytes == string_data(text_of(row.class_id)).bytes;
  if (is_ours) delete_tree(hive, by_name);
}

void register_type_library(RegistrationScope scope) {
  std::wstring path = module_path();
  unique_interface<ITypeLib> library;
  check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()));
  check(scope == RegistrationScope::kMachine ? RegisterTypeLib(library.get(), path.data(), nullptr)
                                             : RegisterTypeLibForUser(library.get(), path.data(), nullptr));
}

void unregister_type_library(const GUID& id, RegistrationScope scope) {
  const HRESULT result =
      scope == RegistrationScope::kMachine
          ? UnRegisterTypeLib(id, kTypeLibraryMajor, kTypeLibraryMinor, kTypeLibraryLocale, kSystem)
          : UnRegisterTypeLibForUser(id, kTypeLibraryMajor, kTypeLibraryMinor, kTypeLibraryLocale, kSystem);
  // For a library that was not registered the two calls report different results. It is a failure only if the library
  // is still registered.
  const std::u16string key = std::u16string(kClasses) + u"TypeLib\\" + text_of(id);
  if (FAILED(result) && ports().registry->key_exists(hive_of(scope), key)) check(result);
}

// A user who never registered a class has no such key, so an empty one would be a trace of us.
void delete_empty_class_list(RegistrationScope scope) {
  Registry& registry = *ports().registry;
  const Hive hive = hive_of(scope);
  const std::u16string key = std::u16string(kClasses) + u"CLSID";
  const bool is_empty =
      registry.key_exists(hive, key) && registry.sub_keys(hive, key).empty() && registry.value_names(hive, key).empty();
  if (is_empty) registry.delete_key(hive, key);
}

}  // namespace

void register_library(RegistrationScope scope) {
  const ComponentLibrary& library = component_library();
  try {
    for (const ComponentClass& row : library.classes) register_class(row, scope);
    if (library.type_library_id != nullptr) register_type_library(scope);
  } catch (const failure& reason) {
    try {
      unregister_library(scope);
    } catch (const failure&) {
      // The first failure says more than this one.
    }
    throw reason;
  }
}

void unregister_library(RegistrationScope scope) {
  const ComponentLibrary& library = component_library();
  for (const ComponentClass& row : library.classes) unregister_class(row, scope);
  if (library.type_library_id != nullptr) unregister_type_library(*library.type_library_id, scope);
  delete_empty_class_list(scope);
}

}  // namespace kavo
