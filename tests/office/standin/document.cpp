#include "office/standin/document.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "office/standin/plain_rtf.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

constexpr std::pair<std::string_view, std::string_view> kEntities[] = {
    {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};

std::string read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void write(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string escaped(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    std::string_view out(&c, 1);
    for (const auto& [entity, character] : kEntities)
      if (out == character) out = entity;
    xml += out;
  }
  return xml;
}

std::string unescaped(std::string_view xml) {
  std::string text;
  while (!xml.empty()) {
    std::size_t length = 1;
    std::string_view character = xml.substr(0, 1);
    for (const auto& [entity, meaning] : kEntities)
      if (xml.starts_with(entity)) length = entity.size(), character = meaning;
    text += character;
    xml.remove_prefix(length);
  }
  return text;
}

}  // namespace

StandInDocument::StandInDocument(std::filesystem::path path) : path_(std::move(path)) {
  const std::string bytes = read(path_);
  if (bytes.starts_with("{\\rtf")) {
    texts_ = texts_of_rtf(bytes);
    return;
  }
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
    texts_.push_back(bytes.substr(at, end - at));
    at = end + 1;
  }
}

void StandInDocument::save(const std::filesystem::path& path) const {
  std::string bytes;
  for (const std::string& text : texts_) bytes += text + '\n';
  write(path, bytes);
}

void StandInDocument::save_as_rtf(const std::filesystem::path& path) const { write(path, rtf_of(texts_)); }

std::filesystem::path StandInDocument::xml_path() const {
  std::filesystem::path xml = path_;
  return xml.replace_filename(path_.stem().native() + L"_" + path_.extension().native().substr(1) + L".xml");
}

std::string StandInDocument::place_of(std::size_t index) const {
  const std::string number = std::to_string(index + 1);
  return path_.extension() == L".xls" ? "sheet:1/cell:A" + number : "slide:1/shape:1/paragraph:" + number;
}

void StandInDocument::export_xml() const {
  const std::string kind = path_.extension() == L".xls" ? "workbook" : "presentation";
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kavo-office version=\"1\" kind=\"" + kind +
                    "\" xml:space=\"preserve\">\n";
  for (std::size_t i = 0; i < texts_.size(); ++i)
    xml += "<seg place=\"" + place_of(i) + "\" check=\"0\" runs=\"" + std::to_string(to_utf16(texts_[i]).size()) +
           "\">" + escaped(texts_[i]) + "</seg>\n";
  write(xml_path(), xml + "</kavo-office>\n");
}

void StandInDocument::import_xml() {
  const std::string xml = read(xml_path());
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    const std::size_t place = xml.find("<seg place=\"" + place_of(i) + "\"");
    if (place == std::string::npos) continue;
    const std::size_t begin = xml.find('>', place) + 1;
    texts_[i] = unescaped(std::string_view(xml).substr(begin, xml.find("</seg>", begin) - begin));
  }
}

}  // namespace kavo::test
