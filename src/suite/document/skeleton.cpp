#include "suite/document/skeleton.h"

#include <algorithm>

#include "common/plain_name.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::string_view kTitle = "KAVO skeleton 2";
// The first format has no checksum, and no facts about the set.
constexpr std::string_view kFirstTitle = "KAVO skeleton 1";

// How many bytes are gathered into one record: few enough to keep in memory, and so many that the records' lines do not
// matter.
constexpr std::size_t kLongestPiece = 64 * 1024;

// No segment has more codes than this. The count in a damaged file must not fill the memory.
constexpr std::uint64_t kMostCodes = 1 << 24;

// True when the file ends with the checksum of every byte before it.
bool is_whole(std::u16string_view path) {
  constexpr std::size_t kHeld = 22;  // bytes: a blank, a number of 20 digits, a line feed
  std::uint64_t sum = kFnvSeed;
  BlockReader reader(path);
  while (reader.more()) {
    const std::string_view window = reader.window();
    const std::size_t length = window.size() - std::min(window.size(), kHeld);
    sum = fnv_add(sum, window.substr(0, length));
    reader.consume(length);
  }
  const std::string_view end = reader.window();
  const std::size_t number = end.rfind(' ') + 1;
  sum = fnv_add(sum, end.substr(0, number));
  return end.substr(number) == std::to_string(sum) + '\n';
}

}  // namespace

void SkeletonWriter::write(std::string_view bytes) {
  sum_ = fnv_add(sum_, bytes);
  file_.write(bytes);
}

void SkeletonWriter::begin(std::u16string_view filter, std::uint64_t checksum, const DocumentFacts& facts,
                           const SetMark& set) {
  const std::string tag = to_utf8(filter);
  record_ = kTitle;
  record_ += '\n';
  append_record_line(record_, 'H',
                     {checksum, facts.code_page, facts.keeps_code_page ? 1u : 0u, tag.size(), facts.data.size(),
                      set.mark.size(), set.author_document.size(), set.author_checksum});
  for (const std::string_view text : {std::string_view(tag), std::string_view(facts.data), std::string_view(set.mark),
                                      std::string_view(set.author_document)})
    record_ += text;
  write(record_);
}

void SkeletonWriter::bytes(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, kLongestPiece - pending_.size());
    pending_ += piece;
    bytes.remove_prefix(piece.size());
    if (pending_.size() == kLongestPiece) flush();
  }
}

void SkeletonWriter::flush() {
  if (pending_.empty()) return;
  record_.clear();
  append_record_line(record_, 'B', {pending_.size()});
  write(record_);
  write(pending_);
  pending_.clear();
}

void SkeletonWriter::computed(std::uint32_t kind, std::string_view original) {
  flush();
  record_.clear();
  append_record_line(record_, 'C', {kind, original.size()});
  record_ += original;
  write(record_);
}

void SkeletonWriter::segment(std::uint32_t number, const Segment& segment, bool is_nested) {
  if (!is_nested) flush();
  record_.clear();
  append_record_line(record_, is_nested ? 'N' : 'S',
                     {number, static_cast<std::uint64_t>(segment.line), static_cast<std::uint64_t>(segment.column),
                      segment.codes.size(), segment.nested.size(), segment.context.size(), segment.original.size()});
  for (const InlineCode& code : segment.codes)
    append_record_line(record_, "?ocx" [static_cast<int>(code.kind)],
                       { code.id, code.required ? 1u : 0u, code.begin, code.end });
  for (const NestedPlace& place : segment.nested)
    append_record_line(record_, 'n', {place.segment, place.begin, place.end});
  record_ += segment.context;
  write(record_);
  write(segment.original);
}

void SkeletonWriter::finish(std::uint32_t segment_count) {
  flush();
  // The line as append_record_line() writes it; its first part is in the checksum.
  record_ = "E " + std::to_string(segment_count) + ' ';
  write(record_);
  write(std::to_string(sum_) + '\n');
}

bool is_skeleton(std::u16string_view path) {
  constexpr std::string_view kBeginning = "KAVO skeleton ";
  BlockReader reader(path);
  while (reader.window().size() < kBeginning.size() && reader.more()) {
  }
  return reader.window().starts_with(kBeginning);
}

SkeletonReader::SkeletonReader(std::u16string_view path) : reader_(path, {kTitle, kFirstTitle}, u"a skeleton") {
  const bool is_first_format = reader_.title() == kFirstTitle;
  if (!is_first_format && !is_whole(path)) reader_.throw_damaged();
  reader_.next();
  if (reader_.kind() != 'H') reader_.throw_damaged();
  header_.checksum = reader_.number();
  header_.facts.code_page = reader_.number32();
  header_.facts.keeps_code_page = reader_.number(1) != 0;
  const std::uint64_t tag_size = reader_.number();
  const std::uint64_t data_size = reader_.number();
  const std::uint64_t mark_size = is_first_format ? 0 : reader_.number();
  const std::uint64_t author_size = is_first_format ? 0 : reader_.number();
  if (!is_first_format) header_.set.author_checksum = reader_.number();
  header_.filter = to_utf16(reader_.bytes(tag_size));
  header_.facts.data = reader_.bytes(data_size);
  header_.set.mark = reader_.bytes(mark_size);
  header_.set.author_document = reader_.bytes(author_size);
  if (!header_.set.author_document.empty() && !plain_name_problem(header_.set.author_document).empty())
    reader_.throw_damaged();
}

void SkeletonReader::next(SkeletonRecord& record) {
  reader_.next();
  switch (reader_.kind()) {
    case 'B':
      record.kind = SkeletonRecord::Kind::kBytes;
      record.bytes = reader_.bytes(reader_.number());
      return;
    case 'C':
      record.kind = SkeletonRecord::Kind::kComputed;
      record.number = reader_.number32();
      record.bytes = reader_.bytes(reader_.number());
      return;
    case 'S':
    case 'N':
      record.kind = reader_.kind() == 'S' ? SkeletonRecord::Kind::kSegment : SkeletonRecord::Kind::kNestedSegment;
      read_hole(record);
      return;
    case 'E':
      record.kind = SkeletonRecord::Kind::kEnd;
      record.number = reader_.number32();
      return;
    default:
      reader_.throw_damaged();
  }
}

void SkeletonReader::read_hole(SkeletonRecord& record) {
  Hole& hole = record.hole;
  record.number = hole.number = reader_.number32();
  hole.line = static_cast<std::int64_t>(reader_.number(INT64_MAX));
  hole.column = static_cast<std::int64_t>(reader_.number(INT64_MAX));
  const std::uint64_t code_count = reader_.number(kMostCodes);
  const std::uint64_t nested_count = reader_.number(kMostCodes);
  const std::uint64_t context_size = reader_.number();
  const std::uint64_t original_size = reader_.number();

  hole.codes.clear();
  for (std::uint64_t i = 0; i < code_count; ++i) {
    reader_.next();
    Hole::Code code;
    switch (reader_.kind()) {
      case 'o':
        code.kind = CodeKind::kOpen;
        break;
      case 'c':
        code.kind = CodeKind::kClose;
        break;
      case 'x':
        code.kind = CodeKind::kStandalone;
        break;
      default:
        reader_.throw_damaged();
    }
    code.id = reader_.number32();
    code.required = reader_.number(1) != 0;
    code.begin = static_cast<std::size_t>(reader_.number(original_size));
    code.end = static_cast<std::size_t>(reader_.number(original_size));
    if (code.begin > code.end) reader_.throw_damaged();
    hole.codes.push_back(code);
  }
  hole.index_codes();
  record.nested.clear();
  std::size_t last = 0;
  for (std::uint64_t i = 0; i < nested_count; ++i) {
    reader_.next();
    if (reader_.kind() != 'n') reader_.throw_damaged();
    NestedPlace place;
    place.segment = reader_.number32();
    place.begin = static_cast<std::size_t>(reader_.number(original_size));
    place.end = static_cast<std::size_t>(reader_.number(original_size));
    if (place.begin < last || place.begin > place.end) reader_.throw_damaged();
    last = place.end;
    record.nested.push_back(place);
  }
  hole.context = reader_.bytes(context_size);
  hole.original = reader_.bytes(original_size);
}

}  // namespace kavo
