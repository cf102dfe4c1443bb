#include "suite/filters/rc/rc_filter.h"

#include <algorithm>
#include <map>

#include "formats/rc/rc_literal.h"
#include "formats/rc/rc_parser.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/rc/rc_checks.h"
#include "suite/filters/rc/rc_extraction.h"
#include "suite/languages/language_tags.h"

namespace kavo {
namespace {

using namespace rc;

bool is_unicode(unsigned code_page) {
  return code_page == kUtf8CodePage || code_page == kUtf16LittleEndian || code_page == kUtf16BigEndian;
}

class RcFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void begin_rebuild(const RebuildSettings& settings) override;
  void check(const Hole& hole, std::string_view translation) override;
  bool is_recoded(const Hole& hole) const override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
  void write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) override;

 private:
  const TextCoding& coding(unsigned code_page);
  // The code page of a translation whose source bytes are in `code_page`.
  unsigned target_of(unsigned code_page) const;
  void write_literal(std::string_view original, unsigned code_page, std::string& bytes);
  void write_comment(std::string_view original, unsigned code_page, std::string& bytes);
  void write_font(std::string_view original, unsigned code_page, std::string& bytes);
  std::string line(const std::string& text, bool is_line_start) const;
  // Appends ASCII text in the script's own coding.
  void write_ascii(std::string_view text, std::string& bytes);

  RcFacts facts_;
  bool is_same_language_ = false;
  LanguageId target_ = 0;
  std::optional<RcChecks> checks_;
  std::map<unsigned, std::unique_ptr<TextCoding>> codings_;
};

// The number of the target language; throws `failure` 5 when it has none.
LanguageId checked_language(std::string_view code) {
  const std::optional<LanguageId> id = resource_language(code);
  if (!id)
    throw failure(
        FailureNumber::kInvalidCall,
        u"the language " + to_utf16(code) + u" has no language number in Windows, so resource scripts cannot name it");
  return *id;
}

unsigned target_code_page(const ConversionSettings& settings) {
  if (settings.target_code_page != 0) return settings.target_code_page;
  const LanguageRow* const row = find_language(to_utf16(settings.target_language));
  return row ? static_cast<unsigned>(row->code_page) : kUtf8CodePage;
}

void RcFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                       ProgressEvent& progress) {
  RcScript script(document, settings);
  RcSurvey survey(script);
  const LanguageId source = checked_language(settings.source_language);
  const LanguageId target = checked_language(settings.target_language);
  survey.choose(source, settings.source_language);
  const bool is_translated = settings.source_language != settings.target_language;
  std::optional<LanguageId> replaced;
  if (const std::int64_t line = survey.line_of(target);
      is_translated && line != 0 && !survey.is_chosen({true, target})) {
    if (!is_on(settings.options, kReplaceOption))
      throw failure(FailureNumber::kFileAlreadyExists,
                    to_utf16("the script already has resources in " + settings.target_language + ", from line " +
                             std::to_string(line) + " on. Nothing is changed; --overwrite replaces them"));
    replaced = target;
  }
  DocumentFacts facts;
  facts.code_page = script.code_page(survey.declared_code_page());
  facts.keeps_code_page = true;
  RcFacts own;
  own.target_code_page = target_code_page(settings);
  own.has_cr_lf = survey.has_cr_lf();
  own.font = {std::string(option_text(settings.options, "rc.dialog-font")),
              std::string(option_text(settings.options, "rc.dialog-font-size")),
              std::string(option_text(settings.options, "rc.dialog-charset"))};
  facts.data = to_data(own);
  facts.text_code_page = is_translated && !is_unicode(facts.code_page) ? own.target_code_page : facts.code_page;
  sink.begin(facts);
  sink.skeleton(script.mark());
  RcExtraction(script, survey, replaced, sink).run(progress);
  if (const std::string list = survey.left_alone(); settings.tell && !list.empty())
    settings.tell({u"left as they are: " + to_utf16(list)});
}

void RcFilter::begin_rebuild(const RebuildSettings& settings) {
  Filter::begin_rebuild(settings);
  facts_ = to_facts(settings.facts.data);
  is_same_language_ = settings.source_language == settings.target_language;
  if (!is_same_language_) target_ = checked_language(settings.target_language);
  checks_.emplace(settings.tell);
}

const TextCoding& RcFilter::coding(unsigned code_page) {
  std::unique_ptr<TextCoding>& coding = codings_[code_page];
  if (!coding) coding = std::make_unique<TextCoding>(code_page);
  return *coding;
}

unsigned RcFilter::target_of(unsigned code_page) const {
  return is_same_language_ || is_unicode(code_page) ? code_page : facts_.target_code_page;
}

void RcFilter::check(const Hole& hole, std::string_view translation) {
  checks_->see(hole, translation, coding(to_place(hole.context).code_page));
}

bool RcFilter::is_recoded(const Hole& hole) const {
  const unsigned code_page = to_place(hole.context).code_page;
  return target_of(code_page) != code_page && !is_ascii(hole.original);
}

void RcFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  const RcTextPlace place = to_place(hole.context);
  const TextCoding& target = coding(target_of(place.code_page));
  RcLiteralWriter writer(target, place.is_wide);
  std::string shown;
  if (!place.begins_with_macro) writer.text("");
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (!part.is_code) {
      writer.text(part.text);
      continue;
    }
    const std::string_view code = hole.bytes_of(part);
    shown.clear();
    coding(place.code_page).decode_run(code, shown);
    // The blanks after a real line end belong to it.
    if (shown.starts_with('\n') || shown.starts_with('\r'))
      writer.text("\n");
    else if (is_macro(shown))
      writer.macro(code);
    else
      writer.code(code);
  }
  if (!place.ends_with_macro) {
    std::string tail;
    target.encode(place.tail, tail, {});
    writer.code(tail);
  }
  // Without a blank the L would become part of the word.
  if (place.is_glued && writer.is_wide()) target.encode(" ", bytes, {});
  writer.finish(bytes);
}

void RcFilter::write_ascii(std::string_view text, std::string& bytes) {
  coding(settings().facts.code_page).encode(text, bytes, {});
}

std::string RcFilter::line(const std::string& text, bool is_line_start) const {
  const std::string end = facts_.has_cr_lf ? "\r\n" : "\n";
  return (is_line_start ? "" : end) + text + end;
}

void RcFilter::write_computed(std::uint32_t number, std::string_view original, std::string& bytes) {
  const unsigned code_page = code_page_of(number);
  const auto pragma = [](unsigned page) {
    return "#pragma code_page(" + (page == 0 ? std::string("DEFAULT") : std::to_string(page)) + ")";
  };
  if (is_same_language_) {
    bytes += original;
    return;
  }
  switch (kind_of(number)) {
    case kLanguageValues:
      return write_ascii(language_words(target_, original.find('_') != std::string_view::npos), bytes);
    case kCodePageNumber:
      return write_ascii(std::to_string(facts_.target_code_page), bytes);
    case kNewLanguage:
      return write_ascii(line("LANGUAGE " + language_words(target_, false), code_page == 0), bytes);
    case kNewCodePage:
      return write_ascii(line(pragma(facts_.target_code_page), code_page == 0), bytes);
    case kOldCodePage:
      return write_ascii(line(pragma(code_page), false), bytes);
    case kRemoved:
      return;
    case kFont:
      return write_font(original, code_page, bytes);
    case kLiteral:
      return write_literal(original, code_page, bytes);
    case kComment:
      return write_comment(original, code_page, bytes);
  }
}

// A name that the target's code page lacks is written in numbers, as a text is.
void RcFilter::write_literal(std::string_view original, unsigned code_page, std::string& bytes) {
  const TextCoding& source = coding(code_page);
  RcLiteralWriter writer(coding(target_of(code_page)), original.front() != '"');
  RcLiteralReader reader(source, nullptr);
  reader.start(original.substr(0, original.size() - 1));
  for (RcPiece piece; reader.next(piece);) {
    std::string text;
    if (piece.kind == RcPiece::kText && source.decode_run(piece.bytes, text) == piece.bytes.size())
      writer.text(text);
    else if (piece.kind != RcPiece::kHidden)
      writer.code(piece.bytes);
  }
  writer.finish(bytes);
}

void RcFilter::write_comment(std::string_view original, unsigned code_page, std::string& bytes) {
  std::string text;
  coding(code_page).decode(original, text, [&](std::string_view) { text += '?'; });
  coding(target_of(code_page)).encode(text, bytes, [](std::string_view, std::string& result) { result += '?'; });
}

// FONT size, "name"[, weight, italic, character set]: the last three are those of extended dialogs.
void RcFilter::write_font(std::string_view original, unsigned code_page, std::string& bytes) {
  std::string text;
  const TextCoding& source = coding(code_page);
  if (source.is_utf16())
    source.decode_run(original, text);
  else
    text = original;
  const std::size_t open = text.find('"');
  const std::size_t close = text.rfind('"');
  std::size_t name = open;
  if (name != 0 && (text[name - 1] == 'L' || text[name - 1] == 'l')) --name;
  std::string begin = text.substr(0, name);
  if (!facts_.font.size.empty())
    if (const std::size_t digits = begin.find_first_of("0123456789"); digits != std::string::npos)
      begin.replace(digits, begin.find_first_not_of("0123456789", digits) - digits, facts_.font.size);
  std::string end = text.substr(close + 1);
  if (const std::size_t last = end.rfind(','); !facts_.font.charset.empty() && last != std::string::npos)
    if (std::ranges::count(end, ',') == 3) end = end.substr(0, last + 1) + " " + facts_.font.charset;
  const auto append = [&](const std::string& part) {
    if (source.is_utf16())
      source.encode(part, bytes, {});
    else
      bytes += part;
  };
  append(begin);
  if (facts_.font.face.empty()) {
    const std::string literal = text.substr(name, close + 1 - name);
    if (source.is_utf16())
      append(literal);
    else
      write_literal(literal, code_page, bytes);
  } else {
    RcLiteralWriter writer(coding(target_of(code_page)), false);
    writer.text(facts_.font.face);
    writer.finish(bytes);
  }
  append(end);
}

}  // namespace

std::unique_ptr<Filter> make_rc_filter() { return std::make_unique<RcFilter>(); }

}  // namespace kavo
