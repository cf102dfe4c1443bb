#include "suite/document/open_tag.h"

namespace kavo {
namespace {

constexpr std::string_view kTitle = "KAVO OpenTag 1";

}  // namespace

OpenTagWriter::OpenTagWriter(std::u16string_view path, const OpenTagHeader& header) : file_(path) {
  record_ = kTitle;
  record_ += '\n';
  append_record_line(record_, 'H',
                     {header.checksum, header.target_code_page, header.source_language.size(),
                      header.target_language.size(), header.colours ? 1u : 0u});
  record_ += header.source_language;
  record_ += header.target_language;
  if (header.colours) {
    const SegmentColours& colours = *header.colours;
    append_record_line(record_, 'K', {colours[0], colours[1], colours[2], colours[3]});
  }
  file_.write(record_);
}

void OpenTagWriter::segment(std::uint32_t number, TranslationStatus status, bool is_unchanged, std::string_view text) {
  record_.clear();
  append_record_line(record_, 'T', {number, static_cast<std::uint64_t>(status), is_unchanged ? 1u : 0u, text.size()});
  file_.write(record_);
  file_.write(text);
  ++count_;
}

void OpenTagWriter::commit() {
  record_.clear();
  append_record_line(record_, 'E', {count_});
  file_.write(record_);
  file_.commit();
}

OpenTagReader::OpenTagReader(std::u16string_view path) : reader_(path, {kTitle}, u"an OpenTag file") {
  reader_.next();
  if (reader_.kind() != 'H') reader_.throw_damaged();
  header_.checksum = reader_.number();
  header_.target_code_page = reader_.number32();
  const std::uint64_t source_size = reader_.number();
  const std::uint64_t target_size = reader_.number();
  const bool is_coloured = reader_.number(1) != 0;
  header_.source_language = reader_.bytes(source_size);
  header_.target_language = reader_.bytes(target_size);
  if (!is_coloured) return;
  reader_.next();
  if (reader_.kind() != 'K') reader_.throw_damaged();
  SegmentColours& colours = header_.colours.emplace();
  for (std::uint32_t& colour : colours) colour = reader_.number32();
}

bool OpenTagReader::next(OpenTagSegment& segment) {
  reader_.next();
  if (reader_.kind() == 'E') {
    if (reader_.number() != count_) reader_.throw_damaged();
    return false;
  }
  if (reader_.kind() != 'T') reader_.throw_damaged();
  segment.number = reader_.number32();
  segment.status = static_cast<TranslationStatus>(reader_.number(static_cast<int>(TranslationStatus::kApproved)));
  segment.is_unchanged = reader_.number(1) != 0;
  segment.text = reader_.bytes(reader_.number());
  ++count_;
  return true;
}

}  // namespace kavo
