// One suite for every registry there is: the system's adapter and the one in memory.
#include "platform/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/ports.h"
#include "support/failures.h"
#include "support/fake_registry.h"
#include "support/system.h"

namespace kavo::test {
namespace {

using Names = std::vector<std::u16string>;

constexpr std::u16string_view kRoot = u"Software\\KavoTestKeys";

RegistryData text(std::u16string_view value) {
  RegistryData data{RegistryType::kString, {}};
  for (const char16_t unit : std::u16string(value) + u'\0') {
    data.bytes += static_cast<char>(unit & 0xFF);
    data.bytes += static_cast<char>(unit >> 8);
  }
  return data;
}

struct Adapter {
  const char* name;
  Registry& (*get)();
};

Registry& system_adapter() { return *ports().registry; }
Registry& memory_adapter() {
  static FakeRegistry registry;
  return registry;
}

class RegistryTest : public testing::TestWithParam<Adapter> {
 protected:
  RegistryTest() { remove_all(std::u16string(kRoot)); }
  ~RegistryTest() override { remove_all(std::u16string(kRoot)); }

  Registry& registry() { return GetParam().get(); }
  std::u16string path(std::u16string_view name) { return std::u16string(kRoot) + u"\\" + std::u16string(name); }

  void write(std::u16string_view key, std::u16string_view name, const RegistryData& data) {
    registry().write(Hive::kCurrentUser, path(key), name, data);
  }
  std::optional<RegistryData> read(std::u16string_view key, std::u16string_view name) {
    return registry().read(Hive::kCurrentUser, path(key), name);
  }

 private:
  void remove_all(const std::u16string& key) {
    for (const std::u16string& name : registry().sub_keys(Hive::kCurrentUser, key)) remove_all(key + u"\\" + name);
    if (registry().key_exists(Hive::kCurrentUser, key)) registry().delete_key(Hive::kCurrentUser, key);
  }
};

INSTANTIATE_TEST_SUITE_P(Every, RegistryTest,
                         testing::Values(Adapter{"System", system_adapter}, Adapter{"Memory", memory_adapter}),
                         [](const auto& adapter) { return adapter.param.name; });

TEST_P(RegistryTest, ValuesOfEveryTypeComeBack) {
  std::string all_bytes;
  for (int byte = 0; byte < 256; ++byte) all_bytes += static_cast<char>(byte);
  const struct {
    const char16_t* name;
    RegistryData data;
  } cases[] = {
      {u"text", text(u"value \u00E4\u4E2D\U0001F600")},
      {u"empty text", text(u"")},
      {u"expandable", {RegistryType::kExpandableString, text(u"%PATH%").bytes}},
      {u"binary", {RegistryType::kBinary, all_bytes}},
      {u"empty binary", {RegistryType::kBinary, ""}},
      {u"number", {RegistryType::kNumber, std::string("\x2A\x00\x00\x80", 4)}},
      {u"big-endian", {RegistryType::kBigEndianNumber, std::string("\x00\x00\x00\x2A", 4)}},
      {u"list", {RegistryType::kStringList, text(u"a").bytes + text(u"b").bytes + std::string(2, '\0')}},
      {u"none", {RegistryType::kNone, "xy"}},
      {u"", text(u"default value")},
  };
  for (const auto& c : cases) write(u"Values", c.name, c.data);
  for (const auto& c : cases) {
    const std::optional<RegistryData> data = read(u"Values", c.name);
    ASSERT_TRUE(data) << path_to_host(c.name);
    EXPECT_EQ(data->type, c.data.type) << path_to_host(c.name);
    EXPECT_EQ(data->bytes, c.data.bytes) << path_to_host(c.name);
  }
}

TEST_P(RegistryTest, TextThatIsNotWholeComesBackToo) {
  const RegistryData lone_surrogate{RegistryType::kString, std::string("\x00\xD8\x00\x00", 4)};
  const RegistryData without_zero{RegistryType::kString, "a"};
  write(u"Values", u"lone", lone_surrogate);
  EXPECT_EQ(read(u"Values", u"lone")->bytes, lone_surrogate.bytes);
  if (!is_native()) return;  // Windows adds the zero itself
  write(u"Values", u"odd", without_zero);
  EXPECT_EQ(read(u"Values", u"odd")->bytes, without_zero.bytes);
}

TEST_P(RegistryTest, WritingAgainReplaces) {
  write(u"Key", u"a", text(u"one"));
  write(u"Key", u"a", {RegistryType::kNumber, std::string(4, '\1')});
  EXPECT_EQ(read(u"Key", u"a")->type, RegistryType::kNumber);
}

TEST_P(RegistryTest, MissingKeyAndValueReadAsNothing) {
  EXPECT_FALSE(read(u"Missing", u"a"));
  write(u"Key", u"a", text(u"one"));
  EXPECT_FALSE(read(u"Key", u"b"));
  EXPECT_FALSE(read(u"Key", u"")) << "a key without default value";
}

TEST_P(RegistryTest, NamesIgnoreCaseAndKeepIt) {
  write(u"MixedCase\\Below", u"ValueName", text(u"x"));
  EXPECT_TRUE(registry().key_exists(Hive::kCurrentUser, path(u"mixedcase\\BELOW")));
  EXPECT_TRUE(read(u"MIXEDCASE\\below", u"VALUENAME"));
  write(u"mixedcase\\below", u"valuename", text(u"y"));
  EXPECT_EQ(registry().sub_keys(Hive::kCurrentUser, kRoot), Names{u"MixedCase"});
  EXPECT_EQ(registry().value_names(Hive::kCurrentUser, path(u"MixedCase\\Below")), Names{u"ValueName"});
  EXPECT_EQ(read(u"MixedCase\\Below", u"ValueName")->bytes, text(u"y").bytes);
}

TEST_P(RegistryTest, CreateKeyMakesEveryKeyAboveIt) {
  registry().create_key(Hive::kCurrentUser, path(u"a\\b\\c"));
  for (const char16_t* key : {u"a", u"a\\b", u"a\\b\\c"})
    EXPECT_TRUE(registry().key_exists(Hive::kCurrentUser, path(key)));
  EXPECT_FALSE(registry().key_exists(Hive::kCurrentUser, path(u"a\\c")));
  EXPECT_NO_THROW(registry().create_key(Hive::kCurrentUser, path(u"a\\b"))) << "an existing key stays";
  EXPECT_TRUE(registry().key_exists(Hive::kCurrentUser, path(u"a\\b\\c")));
}

TEST_P(RegistryTest, DeleteKeyRefusesOneWithKeysBelow) {
  registry().create_key(Hive::kCurrentUser, path(u"a\\b"));
  EXPECT_EQ(failure_number([&] { registry().delete_key(Hive::kCurrentUser, path(u"a")); }), 70);
  EXPECT_TRUE(registry().key_exists(Hive::kCurrentUser, path(u"a\\b")));
  registry().delete_key(Hive::kCurrentUser, path(u"A\\B"));
  registry().delete_key(Hive::kCurrentUser, path(u"a"));
  EXPECT_FALSE(registry().key_exists(Hive::kCurrentUser, path(u"a")));
}

TEST_P(RegistryTest, DeletingWhatIsMissingFails) {
  EXPECT_EQ(failure_number([&] { registry().delete_key(Hive::kCurrentUser, path(u"missing")); }), 53);
  EXPECT_EQ(failure_number([&] { registry().delete_value(Hive::kCurrentUser, path(u"missing"), u"a"); }), 53);
  registry().create_key(Hive::kCurrentUser, path(u"key"));
  EXPECT_EQ(failure_number([&] { registry().delete_value(Hive::kCurrentUser, path(u"key"), u"a"); }), 53);
}

TEST_P(RegistryTest, DeleteValue) {
  write(u"Key", u"a", text(u"one"));
  write(u"Key", u"b", text(u"two"));
  registry().delete_value(Hive::kCurrentUser, path(u"Key"), u"A");
  EXPECT_EQ(registry().value_names(Hive::kCurrentUser, path(u"Key")), Names{u"b"});
}

TEST_P(RegistryTest, Enumeration) {
  Names keys;
  for (int i = 0; i < 30; ++i) {
    keys.push_back(u"Key" + std::u16string(1, static_cast<char16_t>(u'a' + i)));
    registry().create_key(Hive::kCurrentUser, path(keys.back()));
    write(u"Values", keys.back(), text(u"x"));
  }
  Names found = registry().value_names(Hive::kCurrentUser, path(u"Values"));
  std::sort(found.begin(), found.end());
  std::sort(keys.begin(), keys.end());
  EXPECT_EQ(found, keys);
  found = registry().sub_keys(Hive::kCurrentUser, kRoot);
  keys.push_back(u"Values");
  std::sort(found.begin(), found.end());
  std::sort(keys.begin(), keys.end());
  EXPECT_EQ(found, keys);
  EXPECT_EQ(registry().sub_keys(Hive::kCurrentUser, path(u"missing")), Names{});
  EXPECT_EQ(registry().value_names(Hive::kCurrentUser, path(u"missing")), Names{});
}

TEST_P(RegistryTest, HivesAreApart) {
  write(u"Key", u"a", text(u"user"));
  EXPECT_FALSE(registry().read(Hive::kLocalMachine, path(u"Key"), u"a"));
}

TEST_P(RegistryTest, ClassesRootShowsTheClassesOfTheMachine) {
  const std::u16string name = u"KavoTest.Class.1";
  registry().write(Hive::kLocalMachine, u"Software\\Classes\\" + name, u"", text(u"A class"));
  EXPECT_TRUE(registry().key_exists(Hive::kClassesRoot, name));
  EXPECT_EQ(registry().read(Hive::kClassesRoot, name, u"")->bytes, text(u"A class").bytes);
  registry().delete_key(Hive::kLocalMachine, u"Software\\Classes\\" + name);
  EXPECT_FALSE(registry().key_exists(Hive::kClassesRoot, name));
}

TEST(SystemRegistryTest, ThreadsDoNotLoseEachOthersValues) {
  const std::u16string key = std::u16string(kRoot) + u"\\Threads";
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([t, &key] {
      for (int i = 0; i < 10; ++i)
        ports().registry->write(Hive::kCurrentUser, key,
                                std::u16string{static_cast<char16_t>(u'a' + t), static_cast<char16_t>(u'0' + i)},
                                text(u"x"));
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ports().registry->value_names(Hive::kCurrentUser, key).size(), 40u);
  ports().registry->delete_key(Hive::kCurrentUser, key);
}

TEST(SystemRegistryTest, DamagedSettingsFileIsReportedAndNeverOverwritten) {
  const char* folder = std::getenv("KAVO_CONFIG_FOLDER");
  if (!is_native() || !folder) GTEST_SKIP() << "the registry is no file here";
  ports().registry->create_key(Hive::kCurrentUser, u"Software");
  const std::filesystem::path file = std::filesystem::path(folder) / "registry.json";
  const std::filesystem::path saved = std::filesystem::path(folder) / "saved.json";
  std::filesystem::rename(file, saved);
  const std::string user = R"({"HKEY_LOCAL_MACHINE": {}, "HKEY_CURRENT_USER": )";
  for (const std::string& damaged :
       {std::string("{"), std::string("[]"), std::string("{}"), std::string(), user + "[]}", user + "{\"keys\": 1}}",
        user + R"({"values": {"a": {"type": "x", "text": ""}}}})", user + R"({"values": {"a": {"type": 1}}}})",
        user + R"({"values": {"a": {"type": 3, "bytes": "0g"}}}})",
        user + R"({"values": {"a": {"type": 3, "bytes": "0"}}}})"}) {
    std::ofstream(file) << damaged;
    EXPECT_NE(failure_number([] { ports().registry->key_exists(Hive::kCurrentUser, u"Software"); }), 0) << damaged;
    EXPECT_NE(failure_number([] { ports().registry->create_key(Hive::kCurrentUser, u"Software"); }), 0) << damaged;
    std::string left;
    std::getline(std::ifstream(file), left);
    EXPECT_EQ(left, damaged);
  }
  std::filesystem::rename(saved, file);
}

}  // namespace
}  // namespace kavo::test
