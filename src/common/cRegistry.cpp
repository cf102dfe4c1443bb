#include "common/cRegistry.h"

#include <charconv>
#include <optional>
#include <utility>

#include "common/registry_text.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

[[noreturn]] void mismatch() {
  throw failure(FailureNumber::kTypeMismatch, u"The value does not suit the registry value type");
}

std::u16string as_string(const cRegistry::Variant& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return formatted(u"{}", *number);
  mismatch();
}

std::uint32_t as_unsigned(const cRegistry::Variant& value) {
  if (const auto* number = std::get_if<std::int32_t>(&value)) return static_cast<std::uint32_t>(*number);
  const std::string digits = to_utf8(as_string(value));
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc{} || end != digits.data() + digits.size()) mismatch();
  return static_cast<std::uint32_t>(number);
}

std::string four_bytes(std::uint32_t number, bool big_endian) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(number >> (big_endian ? 24 - 8 * i : 8 * i));
  return bytes;
}

std::optional<std::int32_t> number_in(const std::string& bytes, bool big_endian) {
  if (bytes.size() != 4) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes[big_endian ? i : 3 - i]);
  return static_cast<std::int32_t>(number);
}

// The caller's type decides, even for a text with a "%". As an expandable string, a command line with its "%1" would
// not read back as it was written.
RegistryData stored_form(const cRegistry::Variant& value, RegistryType type) {
  switch (type) {
    case RegistryType::kString:
    case RegistryType::kExpandableString:
      return registry_string(as_string(value), type);
    case RegistryType::kBinary:
      if (const auto* bytes = std::get_if<std::string>(&value)) return {type, *bytes};
      mismatch();
    case RegistryType::kNumber:
      return {type, four_bytes(as_unsigned(value), false)};
    case RegistryType::kBigEndianNumber:
      return {type, four_bytes(as_unsigned(value), true)};
    case RegistryType::kStringList:
      if (const auto* texts = std::get_if<std::vector<std::u16string>>(&value)) return registry_string_list(*texts);
      return registry_string_list({as_string(value)});
    case RegistryType::kNone:
      break;
  }
  throw failure(FailureNumber::kInvalidCall, u"Registry values of this type cannot be written");
}

// Nothing for a value that is damaged or has a type that Variant cannot express.
std::optional<cRegistry::Variant> loaded_form(const RegistryData& data) {
  switch (data.type) {
    case RegistryType::kString:
    case RegistryType::kExpandableString:
      return registry_text(data);
    case RegistryType::kBinary:
      return data.bytes;
    case RegistryType::kNumber:
    case RegistryType::kBigEndianNumber:
      return number_in(data.bytes, data.type == RegistryType::kBigEndianNumber);
    case RegistryType::kStringList:
      return registry_text_list(data);
    case RegistryType::kNone:
      break;
  }
  return std::nullopt;
}

std::u16string quoted(std::u16string_view path) {
  std::u16string text = u"\"";
  text += path;
  text += u'"';
  return text;
}

std::u16string text_or(std::u16string_view text, std::u16string_view default_text) {
  return std::u16string(text.empty() ? default_text : text);
}

}  // namespace

bool cRegistry::KeyExists() const { return ports().registry->key_exists(hive_, section_); }
void cRegistry::CreateKey() const { ports().registry->create_key(hive_, section_); }
void cRegistry::DeleteKey() const { ports().registry->delete_key(hive_, section_); }
void cRegistry::DeleteValue() const { ports().registry->delete_value(hive_, section_, name_); }

cRegistry::Variant cRegistry::Value() const {
  try {
    if (const auto data = ports().registry->read(hive_, section_, name_))
      if (auto value = loaded_form(*data)) return *std::move(value);
  } catch (const failure&) {
    // A value that cannot be read counts as missing.
  }
  return default_;
}

void cRegistry::SetValue(const Variant& value) const {
  ports().registry->write(hive_, section_, name_, stored_form(value, type_));
}

void cRegistry::EnumerateValues(std::vector<std::u16string>& names, std::int32_t& count) const {
  names = ports().registry->value_names(hive_, section_);
  count = static_cast<std::int32_t>(names.size());
}

void cRegistry::EnumerateSections(std::vector<std::u16string>& names, std::int32_t& count) const {
  names = ports().registry->sub_keys(hive_, section_);
  count = static_cast<std::int32_t>(names.size());
}

void cRegistry::SetClassValue(std::u16string_view key, std::u16string_view value) const {
  cRegistry place;
  place.ClassKey(static_cast<std::uint32_t>(Hive::kClassesRoot));
  place.SectionKey(key);
  place.SetValue(std::u16string(value));
  place.ClassKey(static_cast<std::uint32_t>(Hive::kLocalMachine));
  place.SectionKey(u"SOFTWARE\\Classes\\" + std::u16string(key));
  place.SetValue(std::u16string(value));
}

void cRegistry::CreateEXEAssociation(std::u16string_view executable, std::u16string_view class_name,
                                     std::u16string_view description, std::u16string_view extension,
                                     std::u16string_view open_text, bool print, std::u16string_view print_text,
                                     bool add_new, std::u16string_view new_text, bool install,
                                     std::u16string_view install_text, std::int32_t icon_index) const {
  const std::u16string program = quoted(executable);
  const std::u16string name(class_name);
  const auto add_verb = [&](std::u16string_view verb, std::u16string_view text, std::u16string_view option) {
    const std::u16string key = name + u"\\shell\\" + std::u16string(verb);
    SetClassValue(key, text);
    SetClassValue(key + u"\\command", formatted(u"{}{} \"%1\"", program, option));
  };
  SetClassValue(u"." + std::u16string(extension), name);
  SetClassValue(name, description);
  add_verb(u"open", text_or(open_text, u"&Open"), u"");
  if (print) add_verb(u"print", text_or(print_text, u"&Print"), u" /p");
  if (install) add_verb(u"add", text_or(install_text, u"&Install " + std::u16string(extension)), u" /a");
  if (add_new) add_verb(u"new", text_or(new_text, u"&New"), u" /n");
  SetClassValue(name + u"\\DefaultIcon", formatted(u"{},{}", program, icon_index));
}

void cRegistry::CreateAdditionalEXEAssociations(std::u16string_view class_name, std::span<const Verb> verbs) const {
  for (const Verb& verb : verbs) {
    const std::u16string key = std::u16string(class_name) + u"\\shell\\" + verb.name;
    SetClassValue(key, verb.text);
    SetClassValue(key + u"\\command", verb.command);
  }
}

}  // namespace kavo
