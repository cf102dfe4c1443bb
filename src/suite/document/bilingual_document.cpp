#include "suite/document/bilingual_document.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <numeric>

#include "common/checksum.h"
#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/base64.h"
#include "suite/document/skeleton.h"
#include "suite/document/tud_rewriter.h"

namespace kavo {
namespace {

constexpr std::size_t kChunkSize = 1024 * 1024;

[[noreturn]] void throw_no_segment() { throw failure(FailureNumber::kSubscriptOutOfRange, u"Subscript out of range"); }

[[noreturn]] void throw_refused(const std::string& reason) {
  throw failure(FailureNumber::kInvalidCall, to_utf16(reason));
}

std::uint32_t number_of(std::string_view text) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

// The first byte of a record says what follows: the match (one byte), the number of the segment, line, column, and the
// texts, each after its size. The record of a changed segment holds the address of its first record, the match and the
// target.
struct Record {
  Record() = default;
  explicit Record(char byte)
      : status(static_cast<TranslationStatus>(byte & 7)),
        is_same((byte & 8) != 0),
        has_match((byte & 16) != 0),
        has_number((byte & 32) != 0),
        is_changed((byte & 64) != 0) {}
  char byte() const {
    return static_cast<char>(static_cast<int>(status) | is_same << 3 | has_match << 4 | has_number << 5 |
                             is_changed << 6);
  }

  TranslationStatus status = TranslationStatus::kUntranslated;
  bool is_same = false;     // the target is the source and not stored again
  bool has_match = false;   // the match is not 0
  bool has_number = false;  // the number is not the segment's place in the document
  bool is_changed = false;
};

// Numbers in groups of seven bits, the last one without the top bit.
void append_number(std::string& bytes, std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) bytes += static_cast<char>(number | 0x80);
  bytes += static_cast<char>(number);
}
std::uint64_t take_number(const char*& at) {
  std::uint64_t number = 0;
  for (int shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return number;
  }
}
std::string_view take_text(const char*& at) {
  const auto size = static_cast<std::size_t>(take_number(at));
  const std::string_view text(at, size);
  at += size;
  return text;
}

// A segment as it was read.
BilingualSegment segment_at(const char* at, std::size_t index) {
  const Record record(*at++);
  BilingualSegment segment;
  segment.status = record.status;
  if (record.has_match) segment.match = static_cast<unsigned char>(*at++);
  segment.number = static_cast<std::uint32_t>(record.has_number ? take_number(at) : index + 1);
  segment.line = static_cast<std::uint32_t>(take_number(at));
  segment.column = static_cast<std::uint32_t>(take_number(at));
  segment.source = take_text(at);
  segment.target = record.is_same ? segment.source : take_text(at);
  return segment;
}

bool is_xml_text(std::string_view coded) {
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);)
    for (std::string_view rest = part.text; !rest.empty();) {
      const std::size_t length = utf8_character_length(rest);
      if (length == 0 || !is_xml_character(utf8_code_point(rest.substr(0, length)))) return false;
      rest.remove_prefix(length);
    }
  return true;
}

// Unpacks the skeleton that is inside a document.
class SkeletonUnpacker final : public TudEvents {
 public:
  explicit SkeletonUnpacker(std::u16string_view path) : file_(path) {}
  void skeleton_inside(std::string_view base64) override {
    decoder_.decode(base64, bytes_);
    file_.write(bytes_);
    bytes_.clear();
  }
  // The skeleton can be read under the temporary name until commit().
  void complete() { file_.complete(); }
  const std::u16string& temporary_path() const { return file_.temporary_path(); }
  void commit() { file_.commit(); }

 private:
  PendingFile file_;
  Base64Decoder decoder_;
  std::string bytes_;
};

}  // namespace

class DocumentLoader final : public TudEvents {
 public:
  explicit DocumentLoader(BilingualDocument& document) : document_(document) {}
  void header(const TudHeader& header) override { document_.header_ = header; }
  void unit(const TudUnit& unit) override { document_.append(unit); }

 private:
  BilingualDocument& document_;
};

BilingualDocument::BilingualDocument(std::u16string_view path, ProgressEvent* progress) : path_(path) {
  DocumentLoader loader(*this);
  read_tud(path_, loader, progress);
  changed_.resize(index_.size());
}

void BilingualDocument::append(const TudUnit& unit) {
  const std::string_view target = translation_of(unit);
  const std::string_view extra = unit.extra;
  const std::size_t colon = std::min(extra.find(':'), extra.size());
  const std::uint32_t number = number_of(unit.id);
  Record record;
  record.status = status_of(unit);
  record.is_same = target == unit.source;
  record.has_match = unit.match.value_or(0) != 0;
  record.has_number = number != index_.size() + 1;
  std::string head(1, record.byte());
  if (record.has_match) head += static_cast<char>(*unit.match);
  if (record.has_number) append_number(head, number);
  append_number(head, number_of(extra.substr(0, colon)));
  append_number(head, number_of(extra.substr(std::min(colon + 1, extra.size()))));
  append_number(head, unit.source.size());
  std::string middle;
  if (!record.is_same) append_number(middle, target.size());
  index_.push_back(store(head, unit.source, middle, record.is_same ? std::string_view() : target));
}

const char* BilingualDocument::store(std::string_view head, std::string_view source, std::string_view middle,
                                     std::string_view target) {
  const std::size_t needed = head.size() + source.size() + middle.size() + target.size();
  if (needed > chunk_size_ - chunk_used_) {
    chunk_size_ = std::max(needed, kChunkSize);
    chunks_.push_back(std::make_unique_for_overwrite<char[]>(chunk_size_));
    chunk_used_ = 0;
  }
  char* const at = chunks_.back().get() + chunk_used_;
  chunk_used_ += needed;
  char* to = at;
  for (const std::string_view part : {head, source, middle, target}) to += part.copy(to, part.size());
  return at;
}

BilingualSegment BilingualDocument::segment(std::size_t index) const {
  if (index >= index_.size()) throw_no_segment();
  const char* at = index_[index];
  const Record record(*at);
  if (!record.is_changed) return segment_at(at, index);
  const char* first = nullptr;
  std::memcpy(&first, ++at, sizeof first);
  at += sizeof first;
  BilingualSegment segment = segment_at(first, index);
  segment.status = record.status;
  segment.match = 0;
  if (record.has_match) segment.match = static_cast<unsigned char>(*at++);
  segment.target = record.is_same ? segment.source : take_text(at);
  return segment;
}

void BilingualDocument::set_segment(std::size_t index, std::string_view target, TranslationStatus status,
                                    std::int16_t match) {
  const BilingualSegment old = segment(index);
  if (const std::string problem = code_problem(old.source, target, true); !problem.empty())
    throw_refused(formatted("Segment {}: {}", std::to_string(index + 1), problem));
  if (!is_xml_text(target))
    throw_refused("Segment " + std::to_string(index + 1) + ": the text holds a character that XML lacks");
  if (match < 0 || match > 100) throw_refused("The match value must be 0 to 100");
  if (old.target == target && old.status == status && old.match == match) return;

  // The record from reading the document stays, and the new one refers to it.
  const char* first = index_[index];
  if (Record(*first).is_changed) std::memcpy(&first, first + 1, sizeof first);
  Record record;
  record.status = status;
  record.is_changed = true;
  record.is_same = old.source == target;
  record.has_match = match != 0;
  std::string head(1, record.byte());
  head.append(reinterpret_cast<const char*>(&first), sizeof first);
  if (record.has_match) head += static_cast<char>(match);
  if (!record.is_same) append_number(head, target.size());
  index_[index] = store(head, {}, {}, record.is_same ? std::string_view() : target);
  mark_changed(index);
}

void BilingualDocument::set_details(std::size_t index, XliffDetails details) {
  if (index >= index_.size()) throw_no_segment();
  details_[index] = std::move(details);
  mark_changed(index);
}

void BilingualDocument::mark_changed(std::size_t index) {
  if (!changed_[index]) ++changed_count_;
  changed_[index] = true;
}

void BilingualDocument::save() {
  if (!is_changed()) return;
  struct Changes final : TudChanges {
    explicit Changes(const BilingualDocument& from) : document(from) {}
    std::optional<BilingualSegment> change(std::size_t index, const TudUnit&) override {
      if (index >= document.changed_.size() || !document.changed_[index]) return std::nullopt;
      return document.segment(index);
    }
    const XliffDetails* details(std::size_t index) override {
      const auto found = document.details_.find(index);
      return found == document.details_.end() ? nullptr : &found->second;
    }
    const BilingualDocument& document;
  };
  Changes changes(*this);
  rewrite_tud(path_, changes);
  changed_.assign(changed_.size(), false);
  changed_count_ = 0;
  details_.clear();
}

std::u16string BilingualDocument::target_name() const {
  if (header_.original.empty()) throw_refused("The document does not name its source document");
  return target_name_of(folder_of(path_), core_file_name(header_.original), to_utf16(header_.target_language));
}

void BilingualDocument::save_open_tag(std::u16string_view path, const std::optional<SegmentColours>& colours) const {
  OpenTagHeader opening;
  opening.checksum = header_.checksum;
  opening.target_code_page = header_.target_code_page;
  opening.source_language = header_.source_language;
  opening.target_language = header_.target_language;
  opening.colours = colours;

  // An editor may have reordered the units. They are handed on in the order of the source document.
  std::vector<std::uint32_t> order;
  const auto number_at = [&](std::size_t i) { return segment(i).number; };
  bool is_sorted = true;
  for (std::size_t i = 0; i < index_.size(); ++i) {
    if (number_at(i) == 0) throw_refused("The document holds a unit that does not come from a skeleton");
    is_sorted = is_sorted && (i == 0 || number_at(i - 1) < number_at(i));
  }
  if (!is_sorted) {
    order.resize(index_.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return number_at(a) < number_at(b); });
  }
  OpenTagWriter writer(path, opening);
  for (std::size_t i = 0; i < index_.size(); ++i) {
    const BilingualSegment next = segment(is_sorted ? i : order[i]);
    writer.segment(next.number, next.status, next.is_unchanged(), next.target);
  }
  writer.commit();
}

std::u16string BilingualDocument::beside(std::string_view name) const {
  return folder_of(path_) + core_file_name(name);
}

std::optional<BilingualDocument::Skeleton> BilingualDocument::locate_skeleton() const {
  FileSystem& files = *ports().files;
  const std::u16string usual = skeleton_name_of(path_);
  for (const std::u16string& path : {header_.skeleton.empty() ? usual : beside(header_.skeleton), usual})
    if (files.info(path)) {
      refuse_other_skeleton(path);
      return Skeleton{path, true};
    }
  if (!header_.has_skeleton_inside) return std::nullopt;
  SkeletonUnpacker unpacker(usual);
  read_tud(path_, unpacker);
  unpacker.complete();
  refuse_other_skeleton(unpacker.temporary_path());
  unpacker.commit();
  return Skeleton{usual, false};
}

void BilingualDocument::refuse_other_skeleton(const std::u16string& skeleton) const {
  const SkeletonHeader found = SkeletonReader(skeleton).header();
  const auto refuse = [&](const char* reason) {
    throw_refused(formatted("{}{}{}: prepare the document again", path_to_host(skeleton), reason, path_to_host(path_)));
  };
  if (found.checksum != header_.checksum) refuse(" is not the skeleton of ");
  if (found.set != header_.set) refuse(" comes from another preparation than ");
}

bool BilingualDocument::is_source_changed() const {
  const SetMark& set = header_.set;
  const std::string& name = set.author_document.empty() ? header_.original : set.author_document;
  const std::uint64_t checksum = set.author_document.empty() ? header_.checksum : set.author_checksum;
  if (name.empty() || checksum == 0) return false;
  const std::u16string source = beside(name);
  const auto info = ports().files->info(source);
  return info && !info->is_folder && checksum_of_file(source) != checksum;
}

}  // namespace kavo
