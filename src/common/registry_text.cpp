#include "common/registry_text.h"

#include "platform/utf16_bytes.h"

namespace kavo {
namespace {

void append_string(std::string& bytes, std::u16string_view text) {
  append_utf16_bytes(bytes, text);
  bytes.append(2, '\0');
}

}  // namespace

std::u16string registry_text(const RegistryData& data) {
  std::u16string text = from_utf16_bytes(data.bytes);
  while (!text.empty() && text.back() == 0) text.pop_back();
  return text;
}

std::vector<std::u16string> registry_text_list(const RegistryData& data) {
  const std::u16string units = from_utf16_bytes(data.bytes);
  std::vector<std::u16string> texts;
  for (std::size_t begin = 0; begin < units.size();) {
    const std::size_t end = std::min(units.find(u'\0', begin), units.size());
    if (end == begin) break;
    texts.push_back(units.substr(begin, end - begin));
    begin = end + 1;
  }
  return texts;
}

RegistryData registry_string(std::u16string_view text, RegistryType type) {
  RegistryData data{type, {}};
  append_string(data.bytes, text);
  return data;
}

RegistryData registry_string_list(const std::vector<std::u16string>& texts) {
  RegistryData data{RegistryType::kStringList, {}};
  for (const std::u16string& text : texts) append_string(data.bytes, text);
  append_string(data.bytes, u"");
  return data;
}

}  // namespace kavo
