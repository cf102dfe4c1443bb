#include "suite/filters/html/html_filter.h"

#include <algorithm>
#include <cstdio>

#include "formats/html/charset.h"
#include "formats/xml/xml_text.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/html/embedded_writing.h"
#include "suite/filters/html/html_extraction.h"
#include "suite/filters/html/html_text_place.h"
#include "suite/filters/html/typed_bracket.h"
#include "suite/filters/page_coding.h"
#include "suite/filters/script/script_place.h"

namespace kavo {
namespace {

// Marks a page in a coding that we cannot write: only ASCII, which all codings share, goes into it.
constexpr std::string_view kAsciiOnly = "ascii";

class HtmlFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
  void write_text(const Hole& hole, std::string_view text, std::string& bytes) override;
  void highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes) override;
  void write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) override;
  void recode(std::string_view original, std::string& bytes) override;

 private:
  void encode(std::string_view text, std::string& bytes) const;
  void write_embedded(const Hole& hole, const html::EmbeddedPlace& place, std::string_view translation,
                      std::string& bytes);

  std::string written_;
};

void HtmlFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                         ProgressEvent& progress) {
  while (document.window().size() < html::kDeclarationReach && document.more()) {
  }
  const html::PageCoding coding = page_coding_of(settings, document.window());
  DocumentFacts facts;
  facts.code_page = coding.code_page.value_or(settings.source_code_page);
  facts.keeps_code_page = coding.has_mark || coding.is_unsupported || coding.is_in_script;
  if (coding.is_unsupported) facts.data = kAsciiOnly;
  if (coding.is_in_script && settings.target_code_page != 0 && settings.target_code_page != facts.code_page &&
      settings.tell)
    settings.tell({u"A script of the page declares the coding " + to_utf16(html::charset_name(facts.code_page)) +
                   u", so the translated page keeps it and the chosen one, " +
                   to_utf16(html::charset_name(settings.target_code_page)) +
                   u", is not used. Change the declaration in the page first"});
  sink.begin(facts);
  sink.skeleton(document.window().substr(0, coding.mark_size));
  document.consume(coding.mark_size);
  html::PageExtraction(document, facts.code_page, settings, sink).run(progress);
}

void HtmlFilter::write_embedded(const Hole& hole, const html::EmbeddedPlace& place, std::string_view translation,
                                std::string& bytes) {
  const bool knows_references =
      place.embedding != html::Embedding::kServer || script::place_from(place.script).has_markup;
  const auto encode_text = [&](std::string_view text, std::string& result) {
    if (knows_references) return encode(text, result);
    target_coding().encode(text, result, [&](std::string_view character, std::string&) {
      throw failure(FailureNumber::kInvalidCall, place_of(hole) + u": \"" + to_utf16(character) +
                                                     u"\" cannot be written in the coding of the page. Use another "
                                                     u"character, or prepare the page with another "
                                                     u"--target-code-page");
    });
  };
  html::EmbeddedWriting(hole, place, target_coding(), encode_text).write(translation, bytes);
}

void HtmlFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  html::EmbeddedPlace embedded;
  if (html::read_context(hole.context, embedded)) return write_embedded(hole, embedded, translation, bytes);
  const bool needs_quotes = html::to_place(hole.context).kind == html::PlaceKind::kUnquoted;
  if (needs_quotes) encode("\"", bytes);
  Filter::write_segment(hole, translation, bytes);
  if (needs_quotes) encode("\"", bytes);
}

void HtmlFilter::write_text(const Hole& hole, std::string_view text, std::string& bytes) {
  const html::TextPlace place = html::to_place(hole.context);
  const bool is_single = place.kind == html::PlaceKind::kSingle;
  written_.clear();
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    // A no-break space looks like a blank, so the next editor might lose it. Therefore it is written as a reference.
    const bool is_no_break_space = c == '\xC2' && text.substr(at).starts_with("\xC2\xA0");
    if (is_no_break_space) {
      written_ += "&nbsp;";
      ++at;
    } else if (c == '&') {
      written_ += "&amp;";
    } else if (c == '<') {
      written_ += html::reference_to_bracket(text.substr(at));
    } else if (c == '>') {
      written_ += "&gt;";
    } else if (c == '"' && place.is_attribute() && !is_single) {
      written_ += "&quot;";
    } else if (c == '\'' && is_single) {
      written_ += "&#39;";
    } else if (c == '\n' && place.keeps_space()) {
      written_ += place.line_end;
    } else if ((c == '\n' || c == '\t') && place.is_attribute()) {
      written_ += c == '\n' ? "&#10;" : "&#9;";
    } else if (c == '\r' && (place.is_attribute() || place.keeps_space())) {
      written_ += "&#13;";
    } else {
      written_ += c;
    }
  }
  encode(written_, bytes);
}

// A character that the page's coding lacks becomes a reference.
void HtmlFilter::encode(std::string_view text, std::string& bytes) const {
  const auto reference_to = [](std::string_view character, std::string& result) {
    result += "&#" + std::to_string(static_cast<std::uint32_t>(utf8_code_point(character))) + ";";
  };
  if (settings().facts.data != kAsciiOnly) {
    target_coding().encode(text, bytes, reference_to);
    return;
  }
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    if (length == 1)
      bytes += text.front();
    else
      reference_to(text.substr(0, length), bytes);
    text.remove_prefix(length);
  }
}

void HtmlFilter::highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes) {
  if (html::to_place(hole.context).kind != html::PlaceKind::kFlow) {
    bytes += segment;
    return;
  }
  char tag[32];
  std::snprintf(tag, sizeof tag, "<font color=\"#%02X%02X%02X\">", static_cast<unsigned>(colour & 0xFF),
                static_cast<unsigned>(colour >> 8 & 0xFF), static_cast<unsigned>(colour >> 16 & 0xFF));
  encode(tag, bytes);
  bytes += segment;
  encode("</font>", bytes);
}

void HtmlFilter::write_computed(std::uint32_t kind, std::string_view original, std::string& bytes) {
  const RebuildSettings& known = settings();
  const bool changes_coding = known.facts.code_page != known.target_code_page;
  if (kind == html::kCharset && changes_coding) {
    encode(html::charset_name(known.target_code_page), bytes);
  } else if (kind == html::kLanguage && known.source_language != known.target_language &&
             !known.target_language.empty()) {
    encode(bcp47_of(known.target_language), bytes);
  } else if (kind == html::kRawText && changes_coding) {
    Filter::recode(original, bytes);
  } else {
    Filter::write_computed(kind, original, bytes);
  }
}

void HtmlFilter::recode(std::string_view original, std::string& bytes) {
  std::string text;
  source_coding().decode(original, text, [&](std::string_view piece) {
    encode(text, bytes);
    text.clear();
    bytes += piece;
  });
  encode(text, bytes);
}

}  // namespace

std::unique_ptr<Filter> make_html_filter() { return std::make_unique<HtmlFilter>(); }

}  // namespace kavo
