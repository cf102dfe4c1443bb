#include "suite/filters/rtf/rtf_filter.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include "formats/rtf/signature.h"
#include "formats/rtf/token_scanner.h"
#include "suite/filters/rtf/rtf_colours.h"
#include "suite/filters/rtf/rtf_computed.h"
#include "suite/filters/rtf/rtf_extraction.h"
#include "suite/filters/rtf/segment_writer.h"

namespace kavo {
namespace {

// The facts about a document are within this many bytes from its beginning.
constexpr std::size_t kFormatReach = 4096;
constexpr unsigned kWestern = 1252;
constexpr unsigned kMacintosh = 10000;

// True for text that is more than blanks. Control words after it stand in a paragraph and may move with its words.
bool is_text(const rtf::Token& token) {
  return (token.kind == rtf::TokenKind::kText && token.bytes.find_first_not_of(' ') != token.bytes.npos) ||
         token.kind == rtf::TokenKind::kByte;
}

// Reads the control words before the second group and the first text.
rtf::DocumentFormat format_of(std::string_view beginning, unsigned usual_code_page) {
  rtf::DocumentFormat format;
  format.code_page = usual_code_page == kUtf8CodePage ? kWestern : usual_code_page;
  rtf::TokenScanner scanner;
  rtf::Token token;
  for (int groups = 0; !beginning.empty(); beginning.remove_prefix(token.bytes.size())) {
    scanner.next(beginning, true, nullptr, token);
    if ((token.kind == rtf::TokenKind::kOpen && ++groups == 2) || is_text(token)) break;
    if (token.is_word("mac")) format.code_page = kMacintosh;
    if (token.is_word("pc")) format.code_page = 437;
    if (token.is_word("pca")) format.code_page = 850;
    if (token.is_word("ansicpg") && token.number > 0) format.code_page = static_cast<unsigned>(token.number);
    if (token.is_word("deff")) format.font = token.number;
    if (token.is_word("deflang")) format.language = token.number;
  }
  return format;
}

// The document's facts hold what rebuilding must know about its format.
std::string facts_of(const rtf::DocumentFormat& format) {
  return std::to_string(format.code_page) + " " + std::to_string(format.language);
}
rtf::DocumentFormat format_from(std::string_view facts) {
  rtf::DocumentFormat format;
  const char* const end = facts.data() + facts.size();
  const char* const middle = std::from_chars(facts.data(), end, format.code_page).ptr;
  if (middle != end) std::from_chars(middle + 1, end, format.language);
  return format;
}

class RtfFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void begin_rebuild(const RebuildSettings& settings) override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
  void highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes) override;
  void write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) override;

 private:
  void write_language(std::string_view original, std::string& bytes) const;

  rtf::DocumentFormat format_;
  const LanguageRow* source_ = nullptr;
  const LanguageRow* target_ = nullptr;
  std::optional<rtf::TargetFonts> fonts_;
  rtf::WritingSettings writing_;
  std::int32_t first_colour_ = 0;  // 0: there is no place for colours
};

void RtfFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                        ProgressEvent& progress) {
  rtf::refuse_other_formats(document);
  while (document.window().size() < kFormatReach && document.more()) {
  }
  // Exactly this many bytes, so that the result does not depend on the size of a block.
  const std::string_view beginning = document.window().substr(0, kFormatReach);
  const rtf::DocumentFormat format = format_of(beginning, settings.source_code_page);
  DocumentFacts facts;
  facts.code_page = rtf::CodingSet().find(format.code_page) ? format.code_page : kWestern;
  facts.keeps_code_page = true;
  facts.data = facts_of(format);
  sink.begin(facts);
  const rtf::ExtractionLanguages languages{rtf::language_row(settings.source_language),
                                           rtf::language_row(settings.target_language)};
  rtf::RtfExtraction(document, format, languages, option_items(settings.options, "rtf.excluded-styles"), sink)
      .run(progress);
}

void RtfFilter::begin_rebuild(const RebuildSettings& settings) {
  Filter::begin_rebuild(settings);
  format_ = format_from(settings.facts.data);
  source_ = rtf::language_row(settings.source_language);
  target_ = rtf::language_row(settings.target_language);
  std::int32_t charset = rtf::kNoCharset;
  if (source_ && target_ && source_->code_page != target_->code_page)
    charset = rtf::charset_of_code_page(static_cast<unsigned>(target_->code_page));
  fonts_.emplace(format_.code_page, charset, rtf::FontMap::from_settings());
  writing_.is_right_to_left = target_ && rtf::is_right_to_left(*target_);
  first_colour_ = 0;
}

void RtfFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  rtf::SegmentWriter(hole, *fonts_, writing_, bytes).write(translation);
}

void RtfFilter::highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes) {
  const rtf::SegmentContext context = rtf::SegmentContext::from_bytes(hole.context);
  const auto found = std::ranges::find(settings().colours, colour);
  if (context.is_plain || first_colour_ == 0 || found == settings().colours.end()) {
    bytes += segment;
    return;
  }
  const auto number = first_colour_ + static_cast<std::int32_t>(found - settings().colours.begin());
  rtf::append_coloured(segment, number, context.last_colour, bytes);
}

void RtfFilter::write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) {
  switch (kind) {
    case rtf::kFonts:
      fonts_->write_table(original, bytes);
      break;
    case rtf::kColours:
      if (settings().highlights)
        first_colour_ = rtf::append_colours(original, settings().colours, bytes);
      else
        bytes += original;
      break;
    case rtf::kLanguage:
      write_language(original, bytes);
      break;
    case rtf::kDirection:
      rtf::append_direction(original, writing_.is_right_to_left, bytes);
      break;
    default:
      bytes += original;
      break;
  }
}

// Text in a language other than the document's keeps its language.
void RtfFilter::write_language(std::string_view original, std::string& bytes) const {
  const rtf::Token word = rtf::word_at(original);
  const bool is_source = (source_ && rtf::are_of_one_language(word.number, source_->lcid)) ||
                         (format_.language != 0 && rtf::are_of_one_language(word.number, format_.language));
  const std::optional<std::int32_t> locale = target_ && target_ != source_ ? rtf::locale_of(*target_) : std::nullopt;
  if (!locale || !is_source) {
    bytes += original;
    return;
  }
  bytes.append("\\").append(word.name).append(std::to_string(*locale));
  if (original.ends_with(' ')) bytes += ' ';
}

}  // namespace

std::unique_ptr<Filter> make_rtf_filter() { return std::make_unique<RtfFilter>(); }

}  // namespace kavo
