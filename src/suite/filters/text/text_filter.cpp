#include "suite/filters/text/text_filter.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "platform/unicode.h"
#include "suite/filters/script/script_filter.h"

namespace kavo {
namespace {

// A longer line is cut into several segments: no paragraph is longer, and a file without line ends must not become one
// segment that fills the memory.
constexpr std::size_t kLongestLine = 256 * 1024;  // bytes

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

// Looks for characters of ASCII in bytes of any coding, places counted in bytes. In an 8-bit coding no other character
// holds these bytes: trail bytes begin at 0x40.
class UnitScan {
 public:
  explicit UnitScan(const TextCoding& coding)
      : width_(coding.is_utf16() ? 2 : 1), low_(coding.number() == kUtf16BigEndian ? 1 : 0) {}

  std::size_t width() const { return width_; }

  // The unit at a place when it is ASCII, else 0.
  char at(std::string_view bytes, std::size_t place) const {
    if (width_ == 1) return bytes[place];
    if (place + 2 > bytes.size() || bytes[place + 1 - low_] != 0) return 0;
    return bytes[place + low_];
  }

  // The first LF or CR from `from` on, the size of `bytes` when there is none.
  std::size_t line_end(std::string_view bytes, std::size_t from) const {
    if (width_ == 1) {
      const char* const end = bytes.data() + bytes.size();
      return static_cast<std::size_t>(find_any<'\n', '\r'>(bytes.data() + from, end) - bytes.data());
    }
    for (; from + 2 <= bytes.size(); from += 2)
      if (at(bytes, from) == '\n' || at(bytes, from) == '\r') return from;
    return bytes.size();
  }

  bool is_blank(std::string_view bytes, std::size_t place) const {
    const char c = at(bytes, place);
    return c == ' ' || c == '\t';
  }

 private:
  std::size_t width_;
  std::size_t low_;  // of the two bytes of a unit, which is the low one
};

class TextFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void begin_rebuild(const RebuildSettings& settings) override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
  void write_text(const Hole& hole, std::string_view text, std::string& bytes) override;
  void written(const WrittenPart& part) override;
  void end_rebuild() override;

 private:
  std::unique_ptr<Filter> scripts_;  // of a script file; those of earlier versions are lines like other texts
};

class LineExtraction {
 public:
  LineExtraction(const TextCoding& coding, ExtractionSink& sink)
      : scan_(coding), coding_(coding), sink_(sink), builder_(coding) {}

  void run(BlockReader& document, ProgressEvent& progress) {
    std::size_t searched = 0;
    for (;;) {
      const std::string_view window = document.window();
      // Whole units only: a block may end in the middle of one.
      const std::string_view units = window.substr(0, window.size() - window.size() % scan_.width());
      const std::size_t end = scan_.line_end(units, searched);
      const bool may_be_pair = end + scan_.width() >= units.size() && !document.exhausted();
      if (end < units.size() && !(may_be_pair && scan_.at(units, end) == '\r')) {
        std::size_t next = end + scan_.width();
        if (scan_.at(units, end) == '\r' && next < units.size() && scan_.at(units, next) == '\n') next += scan_.width();
        line(units.substr(0, end));
        sink_.skeleton(units.substr(end, next - end));
        document.consume(next);
        ++line_;
        column_ = 1;
        searched = 0;
      } else if (end >= kLongestLine) {
        std::string_view piece = units.substr(0, kLongestLine);
        piece.remove_suffix(coding_.incomplete_tail(piece));
        line(piece);
        column_ += static_cast<std::int64_t>(piece.size());
        document.consume(piece.size());
        searched = 0;
      } else if (searched = end; !document.more()) {
        line(units);
        sink_.skeleton(window.substr(units.size()));
        document.consume(window.size());
        progress.report(100);
        return;
      } else {
        progress.report(document.percent());
      }
    }
  }

 private:
  void line(std::string_view bytes) {
    std::size_t begin = 0;
    while (begin < bytes.size() && scan_.is_blank(bytes, begin)) begin += scan_.width();
    std::size_t end = bytes.size();
    while (end >= begin + scan_.width() && scan_.is_blank(bytes, end - scan_.width())) end -= scan_.width();
    if (begin >= end) {
      sink_.skeleton(bytes);
      return;
    }
    const std::string_view text = bytes.substr(begin, end - begin);
    builder_.start(line_, column_ + static_cast<std::int64_t>(begin));
    builder_.add_text(text);
    if (!builder_.has_text()) {
      sink_.skeleton(bytes);
      return;
    }
    sink_.skeleton(bytes.substr(0, begin));
    sink_.segment(builder_.finish());
    sink_.skeleton(bytes.substr(end));
  }

  UnitScan scan_;
  const TextCoding& coding_;
  ExtractionSink& sink_;
  SegmentBuilder builder_;
  std::int64_t line_ = 1;
  std::int64_t column_ = 1;
};

void TextFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                         ProgressEvent& progress) {
  if (ascii_lower(settings.document).ends_with(u".scr"))
    return make_script_filter()->extract(document, settings, sink, progress);
  while (document.window().size() < kUtf8Mark.size() && document.more()) {
  }
  DocumentFacts facts;
  facts.code_page = settings.source_code_page;
  std::size_t mark = 0;
  const auto take_mark = [&](std::string_view bytes, unsigned code_page) {
    if (!document.window().starts_with(bytes)) return;
    mark = bytes.size();
    facts.code_page = code_page;
    facts.keeps_code_page = true;
  };
  take_mark(kUtf8Mark, kUtf8CodePage);
  take_mark(kLittleEndianMark, kUtf16LittleEndian);
  take_mark(kBigEndianMark, kUtf16BigEndian);
  sink.begin(facts);
  sink.skeleton(document.window().substr(0, mark));
  document.consume(mark);
  const TextCoding coding(facts.code_page);
  LineExtraction(coding, sink).run(document, progress);
}

void TextFilter::begin_rebuild(const RebuildSettings& settings) {
  Filter::begin_rebuild(settings);
  if (!settings.facts.data.starts_with(kScriptFacts)) return;
  scripts_ = make_script_filter();
  scripts_->begin_rebuild(settings);
}

void TextFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  if (scripts_) return scripts_->write_segment(hole, translation, bytes);
  Filter::write_segment(hole, translation, bytes);
}

void TextFilter::written(const WrittenPart& part) {
  if (scripts_) scripts_->written(part);
}

void TextFilter::end_rebuild() {
  if (scripts_) scripts_->end_rebuild();
}

// A line stays a line: a line end that a translation holds becomes a blank.
void TextFilter::write_text(const Hole& hole, std::string_view text, std::string& bytes) {
  std::string line(text);
  for (char& c : line)
    if (c == '\n' || c == '\r') c = ' ';
  Filter::write_text(hole, line, bytes);
}

}  // namespace

std::unique_ptr<Filter> make_text_filter() { return std::make_unique<TextFilter>(); }

}  // namespace kavo
