#include "suite/filters/mif/mif_filter.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "formats/mif/document_coding.h"
#include "formats/mif/font_codings.h"
#include "formats/mif/string_coding.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/mif/mif_colours.h"
#include "suite/filters/mif/mif_extraction.h"
#include "suite/filters/mif/mif_master_texts.h"
#include "suite/filters/mif/mif_pages.h"
#include "suite/filters/mif/mif_text_place.h"

namespace kavo {
namespace {

// Facts of a document from version 8.0 on.
constexpr std::string_view kUtf8Document = "utf-8";

class MifFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void begin_rebuild(const RebuildSettings& settings) override;
  void check(const Hole& hole, std::string_view translation) override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
  void highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes) override;
  void write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) override;

 private:
  std::unique_ptr<mif::FontCodings> codings_;
  mif::MifMasterTranslations master_texts_;
};

// Writes a segment as a sequence of statements.
class SegmentWriter {
 public:
  SegmentWriter(const Hole& hole, const mif::FontCodings& codings, std::string& bytes)
      : hole_(hole), place_(mif::to_place(hole.context)), codings_(codings), bytes_(bytes) {
    if (place_.is_side_text && !hole.codes.empty()) find_statements();
    if (place_.code_pages.empty()) return;
    coding_ = &codings_.of(place_.code_pages.front());
    for (const Hole::Code& code : hole_.codes)
      if (is_font(std::string_view(hole_.original).substr(code.begin, code.end - code.begin))) fonts_.push_back(&code);
  }

  void text(std::string_view text) {
    while (!text.empty()) {
      const std::size_t plain = plain_run(text);
      if (plain != 0) {
        value(text.substr(0, plain));
        text.remove_prefix(plain);
        continue;
      }
      if (text.front() == '\r' || text.front() == '\n') {
        text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
        if (place_.is_side_text)
          value(" ");
        else
          statement("<Char HardReturn>");
        continue;
      }
      const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
      character(text.substr(0, length));
      text.remove_prefix(length);
    }
  }

  // A code that is a statement comes between strings. Any other code (an escape, a byte, a building block) is part of a
  // string.
  void code(const CodedPart& reference) {
    const std::string_view code = hole_.bytes_of(reference);
    if (code.starts_with('<') && is_statement(code)) {
      statement(code);
      follow_font(hole_.find(reference));
      return;
    }
    value(code);
    // A blank after this escape is part of it.
    if (code.starts_with("\\x") && code.size() == 4) bytes_ += ' ';
    // The code may end with a byte that begins a character, alone or after a backslash.
    const bool ends_in_byte = !code.empty() && static_cast<unsigned char>(code.back()) >= 0x80;
    if (ends_in_byte || code == "\\x" || code == "\\u") joins_ = Joins::kAnything;
  }

  void finish() {
    close_string();
    if (!place_.is_side_text) keep_frames();
  }

 private:
  static bool is_font(std::string_view code) {
    mif::MifToken token;
    return mif::MifTokenScanner().next(code, true, token) && token.bytes == "<Font";
  }

  // A font may decide the coding of the strings after it.
  void follow_font(const Hole::Code* code) {
    const auto found = std::find(fonts_.begin(), fonts_.end(), code);
    const auto place = static_cast<std::size_t>(found - fonts_.begin()) + 1;
    if (found != fonts_.end() && place < place_.code_pages.size()) coding_ = &codings_.of(place_.code_pages[place]);
  }

  // A paragraph that ran over into other text frames has lines that say so. The translation goes into the first line.
  // The other lines follow without text, because the next paragraph begins in the last of these frames.
  void keep_frames() {
    constexpr std::string_view kFrame = "<TextRectID";
    const std::string_view original = hole_.original;
    if (original.find(kFrame) == std::string_view::npos) return;
    int depth = 0;
    std::size_t frame = original.size();  // where the statement of a frame begins
    mif::MifTokenScanner scanner;
    mif::MifToken token;
    for (std::size_t at = 0; at < original.size(); at += token.bytes.size()) {
      scanner.next(original.substr(at), true, token);
      if (token.kind == mif::MifTokenKind::kOpen && ++depth == 1 && token.bytes == kFrame) frame = at;
      if (token.kind != mif::MifTokenKind::kClose || --depth != 0 || frame >= at) continue;
      (bytes_ += place_.separator) += ">";
      (bytes_ += place_.separator) += "<ParaLine ";
      (bytes_ += place_.separator) += original.substr(frame, at + 1 - frame);
      frame = original.size();
    }
  }

  // In a side text a building block begins like a statement.
  bool is_statement(std::string_view code) const {
    return !place_.is_side_text || std::ranges::binary_search(statements_, code.data() - hole_.original.data());
  }

  void find_statements() {
    const std::string_view original = hole_.original;
    int depth = 0;
    mif::MifTokenScanner scanner;
    mif::MifToken token;
    for (std::size_t at = 0; at < original.size(); at += token.bytes.size()) {
      scanner.next(original.substr(at), true, token);
      if (token.kind == mif::MifTokenKind::kOpen && ++depth == 1)
        statements_.push_back(static_cast<std::ptrdiff_t>(at));
      if (token.kind == mif::MifTokenKind::kClose) --depth;
    }
  }

  // What must not follow in the same string, because it would form one character with the last byte.
  enum class Joins : std::uint8_t { kNothing, kEscapes, kAnything };

  // How many bytes can be written into a string unchanged, whatever the coding.
  static std::size_t plain_run(std::string_view text) {
    constexpr std::string_view escaped = "\\>'`\t\r\n";
    const auto* const end = std::find_if(text.begin(), text.end(), [&](char c) {
      return static_cast<unsigned char>(c) >= 0x80 || escaped.find(c) != std::string_view::npos;
    });
    return static_cast<std::size_t>(end - text.begin());
  }

  void character(std::string_view utf8) {
    const mif::NamedCharacter* const special = mif::find_special_character(utf8);
    if (special && !place_.is_side_text) {
      statement("<Char " + std::string(special->name) + ">");
      return;
    }
    written_.clear();
    // A side text goes into documents of several versions. The merge writes the character, or reports where the
    // document cannot hold it.
    if (!coding_->append(utf8, written_) && place_.is_side_text)
      mif::StringCoding::append_unicode_escape(utf8, written_);
    else if (written_.empty())
      throw failure(FailureNumber::kInvalidCall,
                    place_of(hole_) + u": the document cannot hold \"" + to_utf16(utf8) + u"\"" +
                        (coding_->is_utf8() ? u"" : u"; save it as MIF 8 or later before it is prepared"));
    value(written_);
  }

  void value(std::string_view written) {
    const bool joins = joins_ == Joins::kAnything || (joins_ == Joins::kEscapes && written.starts_with("\\x"));
    if (joins && !place_.is_side_text) close_string();
    open_string();
    bytes_ += written;
    joins_ = coding_->joins_escapes(written) ? Joins::kEscapes : Joins::kNothing;
  }

  void statement(std::string_view statement) {
    close_string();
    separate();
    bytes_ += statement;
  }

  void open_string() {
    if (is_in_string_) return;
    separate();
    bytes_ += "<String `";
    is_in_string_ = true;
  }

  void close_string() {
    if (is_in_string_) bytes_ += "'>";
    is_in_string_ = false;
  }

  void separate() {
    if (!is_empty_) bytes_ += place_.separator;
    is_empty_ = false;
  }

  const Hole& hole_;
  mif::MifTextPlace place_;
  const mif::FontCodings& codings_;
  const mif::StringCoding* coding_ = &codings_.document();
  std::vector<const Hole::Code*> fonts_;  // the fonts of the segment, where they decide on the coding
  std::string& bytes_;
  std::vector<std::ptrdiff_t> statements_;  // of a side text: where its statements begin in the original
  std::string written_;
  bool is_empty_ = true;  // nothing has been written
  bool is_in_string_ = false;
  Joins joins_ = Joins::kNothing;
};

void MifFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                        ProgressEvent& progress) {
  while (document.window().size() < mif::kDeclarationReach && document.more()) {
  }
  const mif::DocumentCoding found = mif::coding_of(document.window(), settings.source_code_page);
  DocumentFacts facts;
  facts.code_page = found.code_page;
  facts.keeps_code_page = true;
  if (found.is_utf8) facts.data = kUtf8Document;
  sink.begin(facts);
  sink.skeleton(document.window().substr(0, found.mark_size));
  document.consume(found.mark_size);
  mif::FontCodings codings(found);
  const mif::PageKinds wanted(option_items(settings.options, "mif.page-types"));
  mif::MifExtraction(document, codings, wanted, sink).run(progress);
}

void MifFilter::begin_rebuild(const RebuildSettings& settings) {
  Filter::begin_rebuild(settings);
  mif::DocumentCoding coding;
  coding.code_page = settings.facts.code_page;
  coding.is_utf8 = settings.facts.data == kUtf8Document;
  codings_ = std::make_unique<mif::FontCodings>(coding);
}

void MifFilter::check(const Hole& hole, std::string_view) {
  if (mif::to_place(hole.context).is_repeated) master_texts_.begin(hole.original);
}

void MifFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  const std::size_t begin = bytes.size();
  SegmentWriter writer(hole, *codings_, bytes);
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      writer.code(part);
    else
      writer.text(part.text);
  }
  writer.finish();
  if (mif::to_place(hole.context).is_repeated) master_texts_.written(std::string_view(bytes).substr(begin));
}

void MifFilter::highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes) {
  const mif::MifTextPlace place = mif::to_place(hole.context);
  const auto found = std::ranges::find(settings().colours, colour);
  if (place.is_side_text || found == settings().colours.end()) {
    bytes += segment;
    return;
  }
  const std::size_t begin = bytes.size();
  mif::append_coloured(segment, static_cast<std::size_t>(found - settings().colours.begin()), place.font,
                       place.separator, bytes);
  if (place.is_repeated) master_texts_.written(std::string_view(bytes).substr(begin));
}

void MifFilter::write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) {
  if (kind >= mif::kRepeatedText)
    master_texts_.append_again(kind - mif::kRepeatedText, original, bytes);
  else if (settings().highlights)
    mif::append_colour_definitions(original, settings().colours, bytes);
  else
    bytes += original;
}

}  // namespace

std::unique_ptr<Filter> make_mif_filter() { return std::make_unique<MifFilter>(); }

}  // namespace kavo
