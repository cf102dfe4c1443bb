#include "workflow/manifest.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/fnv_hash.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/word_count.h"
#include "workflow/folder_files.h"

namespace kavo {
namespace {

using nlohmann::json;

constexpr int kVersion = 1;
constexpr char kFiles[] = "files";

std::string text_of(const json& value, int indent = -1) {
  return value.dump(indent, ' ', false, json::error_handler_t::replace);
}

// A file's bytes for the parser, so that a large manifest is never in memory whole.
class Bytes {
 public:
  explicit Bytes(std::u16string_view path) : reader_(path) {}

  bool at_end() {
    while (at_ == reader_.window().size()) {
      checksum_ = fnv_add(checksum_, reader_.window());
      reader_.consume(std::exchange(at_, 0));
      if (!reader_.more()) return true;
    }
    return false;
  }
  char get() const { return reader_.window()[at_]; }
  void next() { ++at_; }
  // Of all bytes before the place where the parser is.
  std::uint64_t checksum() const { return checksum_; }

 private:
  BlockReader reader_;
  std::size_t at_ = 0;  // in the window
  std::uint64_t checksum_ = kFnvSeed;
};

// What json::parse() asks of an input iterator. The one without bytes is the end.
struct ByteIterator {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = char;

  char operator*() const { return bytes->get(); }
  ByteIterator& operator++() {
    bytes->next();
    return *this;
  }
  bool operator==(const ByteIterator&) const { return bytes == nullptr || bytes->at_end(); }

  Bytes* bytes = nullptr;
};

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
  if (!ports().files->info(path_)) return;
  Bytes bytes(path_);
  std::string key, file, below;
  bool is_ours = true;
  // The JSON tree of a large manifest would take many times its size, so each file's part becomes text at once.
  const auto take = [&](int depth, json::parse_event_t event, json& parsed) {
    if (event == json::parse_event_t::key) (depth == 1 ? key : depth == 2 ? file : below) = parsed.get<std::string>();
    const bool is_file = event == json::parse_event_t::object_end && depth == 2 && key == kFiles;
    if (!is_file) return true;
    is_ours = is_ours && std::ranges::all_of(parsed, &json::is_object);
    files_[file] = text_of(parsed);
    return false;
  };
  const json read = json::parse(ByteIterator{&bytes}, ByteIterator(), take, false);
  is_ours = is_ours && read.is_object() && read.value("version", 0) == kVersion && read.contains(kFiles) &&
            read[kFiles].is_object() && read[kFiles].empty();
  if (!is_ours)
    throw failure(FailureNumber::kFileAlreadyExists, to_utf16(path_to_host(path_)) +
                                                         u" was not written by this command, or it is damaged. Nothing "
                                                         u"was changed. Move the file away and try again");
  is_there_ = true;
  checksum_ = bytes.checksum();
}

json Manifest::find(std::u16string_view source, std::u16string_view language) const {
  const auto file = files_.find(with_slashes(source));
  if (file == files_.end()) return {};
  const json languages = json::parse(file->second);
  const auto entry = languages.find(to_utf8(language));
  return entry == languages.end() ? json() : *entry;
}

bool Manifest::knows(std::u16string_view source, std::u16string_view language, std::uint64_t checksum) const {
  const json entry = find(source, language);
  return !entry.is_null() && entry.value("checksum", json()) == checksum_text(checksum);
}

bool Manifest::has_other_options(std::u16string_view source, std::u16string_view language,
                                 std::string_view options) const {
  const json entry = find(source, language);
  return !entry.is_null() && entry.value("options", json()) != options;
}

void Manifest::note(std::u16string_view source, std::u16string_view language, json entry) {
  std::string& text = files_[with_slashes(source)];
  json languages = text.empty() ? json::object() : json::parse(text);
  languages[to_utf8(language)] = std::move(entry);
  text = text_of(languages);
}

// Writes it piece by piece, in the form of json::dump(1).
void Manifest::for_each_piece(const std::function<void(std::string_view)>& take) const {
  take("{\n \"files\": {");
  const char* before = "\n  ";
  for (const auto& [file, languages] : files_) {
    take(std::exchange(before, ",\n  "));
    take(text_of(file) + ": ");
    std::string text = text_of(json::parse(languages), 1);
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 3) text.insert(at + 1, "  ");
    take(text);
  }
  take(files_.empty() ? "}" : "\n }");
  take(",\n \"version\": " + std::to_string(kVersion) + "\n}\n");
}

void Manifest::save() const {
  if (files_.empty() && !is_there_) return;
  std::uint64_t checksum = kFnvSeed;
  for_each_piece([&](std::string_view piece) { checksum = fnv_add(checksum, piece); });
  if (is_there_ && checksum == checksum_) return;
  PendingFile file(path_);
  for_each_piece([&](std::string_view piece) { file.write(piece); });
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
