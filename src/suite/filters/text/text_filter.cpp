#include "suite/filters/text/text_filter.h"

#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/document/blank_text.h"
#include "suite/filters/script/script_filter.h"
#include "suite/filters/text/text_extraction.h"
#include "suite/filters/text/wrapping.h"

namespace kavo {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

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
  std::string source_text(const Hole& hole) const;

  std::unique_ptr<Filter> scripts_;  // of a script file; in earlier versions script files were plain lines
};

Paragraphs paragraphs_of(const ConversionSettings& settings, BlockReader& document, const TextCoding& coding,
                         ProgressEvent& progress) {
  const std::string_view word = option_text(settings.options, "text.paragraphs");
  if (word == "lines") return Paragraphs::kLines;
  if (word == "blank") return Paragraphs::kBlank;
  if (word == "auto") return find_paragraphs(document, coding, progress);
  throw failure(
      FailureNumber::kInvalidCall,
      u"\"" + to_utf16(word) + u"\" is not a way to find the paragraphs of texts; write lines, blank or auto");
}

// The text without blanks, which change when lines are joined and broken again.
std::string without_blanks(std::string_view text) {
  std::string rest;
  for (const char c : text)
    if (kBlanks.find(c) == kBlanks.npos) rest += c;
  return rest;
}

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
  const TextCoding coding(facts.code_page);
  const std::string mark_bytes(document.window().substr(0, mark));
  document.consume(mark);
  const Paragraphs paragraphs = paragraphs_of(settings, document, coding, progress);
  sink.begin(facts);
  sink.skeleton(mark_bytes);
  TextExtraction(document, coding, paragraphs, sink).run(progress);
}

void TextFilter::begin_rebuild(const RebuildSettings& settings) {
  Filter::begin_rebuild(settings);
  if (!settings.facts.data.starts_with(kScriptFacts)) return;
  scripts_ = make_script_filter();
  scripts_->begin_rebuild(settings);
}

void TextFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  if (scripts_) return scripts_->write_segment(hole, translation, bytes);
  ParagraphShape shape;
  if (!to_shape(hole.context, shape)) return Filter::write_segment(hole, translation, bytes);
  // A text that is rewritten only because the code page changes keeps its lines.
  if (is_recoded(hole) && without_blanks(plain_text(translation)) == without_blanks(source_text(hole)))
    return recode(hole.original, bytes);
  const std::string lines = wrapped(translation, shape);
  CodedTextReader reader(lines);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      bytes += hole.bytes_of(part);
    else
      Filter::write_text(hole, part.text, bytes);
  }
}

// The text in the hole's bytes, without codes.
std::string TextFilter::source_text(const Hole& hole) const {
  std::string text;
  std::size_t at = 0;
  const auto append = [&](std::size_t end) {
    for (std::string_view rest = std::string_view(hole.original).substr(at, end - at); !rest.empty();) {
      const std::size_t length = source_coding().decode_run(rest, text);
      if (length == 0) break;
      rest.remove_prefix(length);
    }
  };
  for (const Hole::Code& code : hole.codes) {
    append(code.begin);
    at = code.end;
  }
  append(hole.original.size());
  return text;
}

void TextFilter::written(const WrittenPart& part) {
  if (scripts_) scripts_->written(part);
}

void TextFilter::end_rebuild() {
  if (scripts_) scripts_->end_rebuild();
}

// A line stays one line: a line end in a translation becomes a blank.
void TextFilter::write_text(const Hole& hole, std::string_view text, std::string& bytes) {
  std::string line(text);
  for (char& c : line)
    if (c == '\n' || c == '\r') c = ' ';
  Filter::write_text(hole, line, bytes);
}

}  // namespace

std::unique_ptr<Filter> make_text_filter() { return std::make_unique<TextFilter>(); }

}  // namespace kavo
