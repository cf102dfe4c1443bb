// The registry through the W calls. A missing key or value is a result; every other error is a `failure`.
#include "platform/registry.h"

#include <windows.h>

#include "platform/adapters.h"
#include "platform/formatted.h"
#include "platform/win32/owners.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

// A key's name has at most 255 characters, a value's at most 16383.
constexpr DWORD kLongestName = 16384;

HKEY hive_key(Hive hive) { return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(hive))); }

std::u16string name_of(Hive hive) {
  switch (hive) {
    case Hive::kClassesRoot:
      return u"HKEY_CLASSES_ROOT";
    case Hive::kCurrentUser:
      return u"HKEY_CURRENT_USER";
    default:
      return u"HKEY_LOCAL_MACHINE";
  }
}

void check(LSTATUS status, Hive hive, std::u16string_view path) {
  if (status == ERROR_SUCCESS) return;
  const failure reason = system_failure(static_cast<DWORD>(status));
  throw failure(reason.number(), formatted(u"The registry key {}\\{}: {}", name_of(hive), path, reason.description()),
                reason.source());
}

bool is_missing(LSTATUS status) { return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND; }

// Empty when the key does not exist.
unique_hkey open_key(Hive hive, std::u16string_view path, REGSAM access) {
  unique_hkey key;
  const LSTATUS status = RegOpenKeyExW(hive_key(hive), to_wide(path).c_str(), 0, access, key.put());
  if (is_missing(status)) return {};
  check(status, hive, path);
  return key;
}

unique_hkey make_key(Hive hive, std::u16string_view path, REGSAM access) {
  unique_hkey key;
  check(RegCreateKeyExW(hive_key(hive), to_wide(path).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                        key.put(), nullptr),
        hive, path);
  return key;
}

// Collects names by index. `next` calls RegEnumKeyEx or RegEnumValue and asks for the name only.
template <typename Next>
std::vector<std::u16string> list_names(Hive hive, std::u16string_view path, Next next) {
  std::vector<std::u16string> names;
  std::wstring buffer(kLongestName, L'\0');
  for (DWORD index = 0;; ++index) {
    DWORD length = kLongestName;
    const LSTATUS status = next(index, buffer.data(), &length);
    if (status == ERROR_NO_MORE_ITEMS) return names;
    check(status, hive, path);
    names.push_back(from_wide(std::wstring_view(buffer.data(), length)));
  }
}

class WindowsRegistry final : public Registry {
 public:
  bool key_exists(Hive hive, std::u16string_view path) override {
    unique_hkey key;
    return RegOpenKeyExW(hive_key(hive), to_wide(path).c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS;
  }

  void create_key(Hive hive, std::u16string_view path) override { make_key(hive, path, KEY_READ); }

  void delete_key(Hive hive, std::u16string_view path) override {
    check(RegDeleteKeyW(hive_key(hive), to_wide(path).c_str()), hive, path);
  }

  void delete_value(Hive hive, std::u16string_view path, std::u16string_view name) override {
    const unique_hkey key = open_key(hive, path, KEY_SET_VALUE);
    check(key ? RegDeleteValueW(key.get(), to_wide(name).c_str()) : ERROR_FILE_NOT_FOUND, hive, path);
  }

  std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) override {
    const unique_hkey key = open_key(hive, path, KEY_QUERY_VALUE);
    if (!key) return std::nullopt;
    const std::wstring wide_name = to_wide(name);
    RegistryData data;
    for (;;) {
      DWORD type = 0;
      DWORD size = static_cast<DWORD>(data.bytes.size());
      // A null buffer asks for the size; the value may grow between the two calls.
      BYTE* buffer = data.bytes.empty() ? nullptr : reinterpret_cast<BYTE*>(data.bytes.data());
      const LSTATUS status = RegQueryValueExW(key.get(), wide_name.c_str(), nullptr, &type, buffer, &size);
      if (is_missing(status)) return std::nullopt;
      if (status != ERROR_MORE_DATA) check(status, hive, path);
      const bool complete = status == ERROR_SUCCESS && size <= data.bytes.size();
      data.type = static_cast<RegistryType>(type);
      data.bytes.resize(size);
      if (complete) return data;
    }
  }

  void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) override {
    const unique_hkey key = make_key(hive, path, KEY_SET_VALUE);
    check(RegSetValueExW(key.get(), to_wide(name).c_str(), 0, static_cast<DWORD>(data.type),
                         reinterpret_cast<const BYTE*>(data.bytes.data()), static_cast<DWORD>(data.bytes.size())),
          hive, path);
  }

  std::vector<std::u16string> sub_keys(Hive hive, std::u16string_view path) override {
    const unique_hkey key = open_key(hive, path, KEY_ENUMERATE_SUB_KEYS);
    if (!key) return {};
    return list_names(hive, path, [&](DWORD index, wchar_t* name, DWORD* length) {
      return RegEnumKeyExW(key.get(), index, name, length, nullptr, nullptr, nullptr, nullptr);
    });
  }

  std::vector<std::u16string> value_names(Hive hive, std::u16string_view path) override {
    const unique_hkey key = open_key(hive, path, KEY_QUERY_VALUE);
    if (!key) return {};
    return list_names(hive, path, [&](DWORD index, wchar_t* name, DWORD* length) {
      return RegEnumValueW(key.get(), index, name, length, nullptr, nullptr, nullptr, nullptr);
    });
  }
};

}  // namespace

Registry& system_registry() {
  static WindowsRegistry registry;
  return registry;
}

}  // namespace kavo
