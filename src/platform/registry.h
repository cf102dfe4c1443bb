// Port: the registry. The keys are those of Windows on both systems; the native adapter keeps them in a file of the
// user's configuration folder. Strings are UTF-16 and are stored with the terminating zero, as the W calls do.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

enum class Hive : std::uint32_t {
  kClassesRoot = 0x80000000u,
  kCurrentUser = 0x80000001u,
  kLocalMachine = 0x80000002u,
};

enum class RegistryType : std::uint32_t {
  kNone = 0,
  kString = 1,
  kExpandableString = 2,
  kBinary = 3,
  kNumber = 4,           // 32 bits, little-endian
  kBigEndianNumber = 5,  // 32 bits, big-endian
  kStringList = 7,
};

struct RegistryData {
  RegistryType type = RegistryType::kNone;
  std::string bytes;  // as stored: strings are UTF-16LE with their terminating zero
};

// Paths are below the hive, without "\" at either end. Each call throws `failure` when the system refuses (70) or
// cannot read or write its settings (57 or the number of the files port).
class Registry {
 public:
  virtual ~Registry() = default;
  virtual bool key_exists(Hive hive, std::u16string_view path) = 0;
  virtual void create_key(Hive hive, std::u16string_view path) = 0;  // with every key above it
  // Throws 53 when the key is missing and 70 while it has keys below it (RegDeleteKey).
  virtual void delete_key(Hive hive, std::u16string_view path) = 0;
  // Throws 53 when the key or the value is missing.
  virtual void delete_value(Hive hive, std::u16string_view path, std::u16string_view name) = 0;
  // Nothing when the key or the value is missing; the name "" is the key's default value.
  virtual std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) = 0;
  // Creates the key when it is missing.
  virtual void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) = 0;
  // Names without path; empty for a missing key.
  virtual std::vector<std::u16string> sub_keys(Hive hive, std::u16string_view path) = 0;
  virtual std::vector<std::u16string> value_names(Hive hive, std::u16string_view path) = 0;
};

}  // namespace kavo
