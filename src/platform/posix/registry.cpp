// The registry as one JSON file of the user's configuration folder.
//
// Every call asks whether the file is still the one that was read last, so that a value that another process has
// written is seen at once; only a new file is read and taken apart. A change holds a lock file from reading to
// renaming, so that no process loses another one's values. A file that cannot be understood is never overwritten.
#include "platform/registry.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>

#include "platform/adapters.h"
#include "platform/desktop.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/posix/host.h"
#include "platform/posix/paths.h"
#include "platform/registry_tree.h"
#include "platform/unicode.h"
#include "platform/utf16_bytes.h"

namespace kavo {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kHexDigits = "0123456789abcdef";

std::string to_hex(std::string_view bytes) {
  std::string hex;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += kHexDigits[byte >> 4];
    hex += kHexDigits[byte & 15];
  }
  return hex;
}

std::string registry_file() { return config_folder() + "/registry.json"; }

[[noreturn]] void throw_damaged(const std::string& reason) {
  throw failure(
      FailureNumber::kDeviceError,
      formatted(u"The settings in {} are damaged ({}): repair the file, or move it away to start without settings",
                registry_file(), reason));
}

[[noreturn]] void throw_no_hex() { throw_damaged("a value is not hexadecimal"); }

// Throws `failure` 57 for anything but pairs of digits.
std::string from_hex(std::string_view hex) {
  std::string bytes;
  if (hex.size() % 2 != 0) throw_no_hex();
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    const std::size_t high = kHexDigits.find(hex[i]);
    const std::size_t low = kHexDigits.find(hex[i + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) throw_no_hex();
    bytes += static_cast<char>(high << 4 | low);
  }
  return bytes;
}

// The text of a value in UTF-8, if the stored bytes can be restored from it: whole units, well-formed UTF-16, and one
// zero, at the end.
std::optional<std::string> text_of(const RegistryData& data) {
  if (data.type != RegistryType::kString && data.type != RegistryType::kExpandableString) return std::nullopt;
  if (data.bytes.size() < 2 || data.bytes.size() % 2 != 0) return std::nullopt;
  std::u16string text = from_utf16_bytes(data.bytes);
  if (text.find(u'\0') != text.size() - 1) return std::nullopt;
  text.pop_back();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] < 0xD800 || text[i] > 0xDFFF) continue;
    const bool is_pair = text[i] <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    if (!is_pair) return std::nullopt;
    ++i;
  }
  return to_utf8(text);
}

std::string bytes_of(std::u16string_view text) {
  std::string bytes;
  append_utf16_bytes(bytes, text);
  return bytes.append(2, '\0');
}

Json to_json(const RegistryData& data) {
  Json json{{"type", static_cast<std::uint32_t>(data.type)}};
  if (const std::optional<std::string> text = text_of(data))
    json["text"] = *text;
  else
    json["bytes"] = to_hex(data.bytes);
  return json;
}

RegistryData data_from_json(const Json& json) {
  RegistryData data;
  data.type = static_cast<RegistryType>(json.at("type").get<std::uint32_t>());
  if (json.contains("text"))
    data.bytes = bytes_of(to_utf16(json["text"].get<std::string>()));
  else
    data.bytes = from_hex(json.at("bytes").get<std::string>());
  return data;
}

Json to_json(const RegistryKey& key) {
  // Objects from the start, and no operator[], which turns a null value into an object: if memory runs out at that
  // moment, the value is left half constructed and cannot be destroyed.
  Json keys = Json::object(), values = Json::object(), json = Json::object();
  for (const auto& [name, below] : key.keys) keys.emplace(to_utf8(name), to_json(*below));
  for (const auto& [name, data] : key.values) values.emplace(to_utf8(name), to_json(data));
  if (!keys.empty()) json.emplace("keys", std::move(keys));
  if (!values.empty()) json.emplace("values", std::move(values));
  return json;
}

// The members of the object that `json` has under this name; none when it has no such member. Throws Json::exception
// when either of the two is not an object.
const Json::object_t& members_of(const Json& json, const char* name) {
  static const Json::object_t none;
  const Json::object_t& members = json.get_ref<const Json::object_t&>();
  const auto found = members.find(name);
  return found == members.end() ? none : found->second.get_ref<const Json::object_t&>();
}

void fill(RegistryKey& key, const Json& json) {
  for (const auto& [name, below] : members_of(json, "keys")) {
    std::unique_ptr<RegistryKey>& made = key.keys[to_utf16(name)];
    made = std::make_unique<RegistryKey>();
    fill(*made, below);
  }
  for (const auto& [name, data] : members_of(json, "values")) key.values[to_utf16(name)] = data_from_json(data);
}

constexpr const char* kCurrentUser = "HKEY_CURRENT_USER";
constexpr const char* kLocalMachine = "HKEY_LOCAL_MACHINE";

// Runs `work`. Its failures say which file could not be read or changed.
template <class Work>
decltype(auto) about_settings(const char* what, Work&& work) {
  try {
    return work();
  } catch (const failure& reason) {
    throw failure(reason.number(),
                  formatted(u"The settings in {} cannot be {}: {}", registry_file(), what, reason.description()),
                  reason.source());
  }
}

// How long to wait for another program that is changing the settings. Not for ever: it may have been suspended in the
// middle.
constexpr double kLongestWait = 10;  // seconds
constexpr double kBetweenAttempts = 0.01;

// Takes the lock that a change holds. Throws `interruption` when the user interrupts, and 70 when the wait is over.
LockedFile lock_settings() {
  make_host_folder(config_folder());
  const std::string path = config_folder() + "/registry.lock";
  Descriptor lock = open_host(path, O_RDWR | O_CREAT);
  Clock& clock = *ports().clock;
  const double end = clock.seconds() + kLongestWait;
  while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) throw_errno();
    throw_if_interrupted();
    if (clock.seconds() > end)
      throw failure(FailureNumber::kPermissionDenied,
                    to_utf16("another program holds " + path + "; end it and try again"));
    clock.sleep(kBetweenAttempts);
  }
  return LockedFile(std::move(lock));
}

RegistryTree load(const std::string& path) {
  RegistryTree tree;
  const std::optional<std::string> bytes = about_settings("read", [&] { return read_host_file(path); });
  if (!bytes) return tree;
  try {
    const Json json = Json::parse(*bytes);
    fill(tree.current_user(), json.at(kCurrentUser));
    fill(tree.local_machine(), json.at(kLocalMachine));
  } catch (const Json::exception& error) {
    throw_damaged(error.what());
  }
  return tree;
}

// The settings as of the last reading of the file.
class LastRead {
 public:
  // Runs `question` on the tree as the file has it now. Throws what load() and the question throw.
  template <class Question>
  auto ask(Question&& question) {
    const std::lock_guard guard(mutex_);
    const std::string path = registry_file();
    if (!is_current(path)) {
      forget();
      // The file is opened before it is read. When another file takes the name in between, the next call sees that and
      // reads again.
      std::optional<Descriptor> opened = open_file(path);
      tree_.emplace(load(path));
      if (opened && ::fstat(opened->get(), &status_) == 0) file_.emplace(std::move(*opened));
    }
    return question(*tree_);
  }

 private:
  static std::optional<Descriptor> open_file(const std::string& path) {
    try {
      return open_host(path, O_RDONLY);
    } catch (const failure&) {
      return std::nullopt;  // load() reports the reason
    }
  }

  // This program replaces the file as a whole, so a new one is another file; an editor may write into it. It stays open
  // here, because the system gives the number of a deleted file to the next one.
  bool is_current(const std::string& path) const {
    struct stat now;
    if (!tree_) return false;
    if (::stat(path.c_str(), &now) != 0) return !file_ && means_absent(errno);
    return file_ && now.st_dev == status_.st_dev && now.st_ino == status_.st_ino && now.st_size == status_.st_size &&
           now.st_mtim.tv_sec == status_.st_mtim.tv_sec && now.st_mtim.tv_nsec == status_.st_mtim.tv_nsec;
  }
  void forget() {
    file_.reset();
    tree_.reset();
  }

  std::mutex mutex_;
  std::optional<RegistryTree> tree_;
  std::optional<Descriptor> file_;
  struct stat status_ {};
};

// Removes what killed programs left beside the file. The caller holds the lock, so nobody else is writing.
void remove_leftovers() {
  const std::string start = split_host_path(registry_file()).name + ".kavo-";
  for_each_entry(config_folder(), [&](const char* name) {
    if (std::string_view(name).starts_with(start)) ::unlink((config_folder() + "/" + name).c_str());
  });
}

void save(RegistryTree& tree) {
  std::string bytes;
  try {
    bytes = Json{{kCurrentUser, to_json(tree.current_user())}, {kLocalMachine, to_json(tree.local_machine())}}.dump(2);
  } catch (const Json::exception&) {
    throw failure(FailureNumber::kInvalidCall, u"The name of a registry key or value is not valid Unicode");
  }
  about_settings("changed", [&] {
    remove_leftovers();
    replace_host_file(registry_file(), bytes + "\n");
  });
}

class PosixRegistry final : public Registry {
 public:
  bool key_exists(Hive hive, std::u16string_view path) override {
    return last_.ask([&](RegistryTree& tree) { return tree.key_exists(hive, path); });
  }

  void create_key(Hive hive, std::u16string_view path) override {
    change([&](RegistryTree& tree) { tree.create_key(hive, path); });
  }

  void delete_key(Hive hive, std::u16string_view path) override {
    change([&](RegistryTree& tree) { tree.delete_key(hive, path); });
  }

  void delete_value(Hive hive, std::u16string_view path, std::u16string_view name) override {
    change([&](RegistryTree& tree) { tree.delete_value(hive, path, name); });
  }

  std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) override {
    return last_.ask([&](RegistryTree& tree) { return tree.read(hive, path, name); });
  }

  void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) override {
    change([&](RegistryTree& tree) { tree.write(hive, path, name, data); });
  }

  std::vector<std::u16string> sub_keys(Hive hive, std::u16string_view path) override {
    return last_.ask([&](RegistryTree& tree) { return tree.sub_keys(hive, path); });
  }

  std::vector<std::u16string> value_names(Hive hive, std::u16string_view path) override {
    return last_.ask([&](RegistryTree& tree) { return tree.value_names(hive, path); });
  }

 private:
  template <typename Change>
  void change(Change apply) {
    const LockedFile lock = about_settings("changed", lock_settings);
    RegistryTree tree = load(registry_file());
    apply(tree);
    save(tree);
  }

  LastRead last_;
};

}  // namespace

Registry& system_registry() {
  static PosixRegistry registry;
  return registry;
}

}  // namespace kavo
