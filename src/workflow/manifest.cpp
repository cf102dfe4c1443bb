#include "workflow/manifest.h"

#include <algorithm>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/word_count.h"
#include "workflow/folder_files.h"

namespace kavo {
namespace {

using nlohmann::json;

constexpr int kVersion = 1;

std::string with_slashes(std::u16string_view path) {
  std::string text = to_utf8(path);
  std::ranges::replace(text, '\\', '/');
  return text;
}

}  // namespace

std::string place_below(std::u16string_view folder, std::u16string_view file) {
  const std::u16string top = path_in(ports().files->absolute(folder), u"");
  const std::u16string whole = ports().files->absolute(file);
  const bool is_below = whole.size() > top.size() && equal_ignoring_case(whole.substr(0, top.size()), top);
  return is_below ? with_slashes(whole.substr(top.size())) : "";
}

std::string checksum_text(std::uint64_t checksum) {
  std::string text(16, '0');
  for (std::size_t i = text.size(); i-- > 0; checksum >>= 4) text[i] = "0123456789abcdef"[checksum & 15];
  return text;
}

std::u16string Manifest::path_in_folder(std::u16string_view folder) { return path_in(folder, u"manifest.json"); }

Manifest::Manifest(std::u16string_view folder) : path_(path_in_folder(folder)) {
  value_ = {{"version", kVersion}, {"files", json::object()}};
  if (!ports().files->info(path_)) return;
  BlockReader reader(path_);
  while (reader.more()) {
  }
  text_ = std::string(reader.window());
  json read = json::parse(text_, nullptr, false);
  const bool is_ours = read.is_object() && read.value("version", 0) == kVersion && read.contains("files") &&
                       read["files"].is_object() && std::ranges::all_of(read["files"], [](const json& languages) {
                         return languages.is_object() && std::ranges::all_of(languages, &json::is_object);
                       });
  if (!is_ours)
    throw failure(FailureNumber::kFileAlreadyExists, to_utf16(path_to_host(path_)) +
                                                         u" was not written by this command, or it is damaged. Nothing "
                                                         u"was changed. Move the file away and try again");
  value_ = std::move(read);
}

const json* Manifest::find(std::u16string_view source, std::u16string_view language) const {
  const json& files = value_["files"];
  const auto file = files.find(with_slashes(source));
  if (file == files.end()) return nullptr;
  const auto entry = file->find(to_utf8(language));
  return entry == file->end() ? nullptr : &*entry;
}

bool Manifest::knows(std::u16string_view source, std::u16string_view language) const {
  return find(source, language) != nullptr;
}

bool Manifest::has_other_options(std::u16string_view source, std::u16string_view language,
                                 std::string_view options) const {
  const json* const entry = find(source, language);
  return entry != nullptr && entry->value("options", json()) != options;
}

void Manifest::note(std::u16string_view source, std::u16string_view language, json entry) {
  value_["files"][with_slashes(source)][to_utf8(language)] = std::move(entry);
}

void Manifest::save() const {
  const std::string text = value_.dump(1, ' ', false, json::error_handler_t::replace) + "\n";
  if (text == text_) return;
  PendingFile file(path_);
  file.write(text);
  file.commit();
}

json Manifest::entry_of(std::u16string_view folder, const std::vector<std::u16string>& documents,
                        std::string_view options) {
  json entry = {{"options", options}, {"documents", json::object()}};
  for (const std::u16string& path : documents) {
    const BilingualDocument document(path);
    std::uint64_t words = 0;
    for (std::size_t i = 0; i < document.size(); ++i) words += word_count(plain_text(document.segment(i).source));
    entry["checksum"] = checksum_text(document.header().set.author_checksum);
    entry["documents"][place_below(folder, path)] = {
        {"checksum", checksum_text(document.header().checksum)}, {"segments", document.size()}, {"words", words}};
  }
  return entry;
}

}  // namespace kavo
