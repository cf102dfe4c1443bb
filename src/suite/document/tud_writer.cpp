// The writing half of the bilingual document's format: new documents.
#include <algorithm>

#include "formats/text/text_coding.h"
#include "formats/xml/xml_text.h"
#include "suite/document/file_uri.h"
#include "suite/document/tud_format.h"
#include "suite/document/tud_header_fields.h"

namespace kavo {
namespace {

// The origin of the comments that a document's author wrote.
constexpr std::string_view kAuthorNote = "author";

// How many codes a unit's note lists. Nobody reads a longer list.
constexpr std::size_t kMostListed = 30;

void append_attribute(std::string& xml, std::string_view name, std::string_view value) {
  xml += ' ';
  xml += name;
  xml += "=\"";
  append_xml_attribute(xml, value);
  xml += '"';
}

// White space that an editor would tidy away: at either end, doubled, or other than a blank.
bool has_delicate_blanks(std::string_view text) {
  bool after_blank = true;
  for (const char c : text) {
    if (c == '\t' || c == '\n' || c == '\r' || (c == ' ' && after_blank)) return true;
    after_blank = c == ' ';
  }
  return after_blank;
}

void append_code_element(std::string& xml, const InlineCode& code) {
  if (code.kind == CodeKind::kClose) {
    xml += "</g>";
    return;
  }
  xml += code.kind == CodeKind::kOpen ? "<g" : code.shown.empty() ? "<x" : "<ph";
  append_attribute(xml, "id", std::to_string(code.id));
  if (!code.type.empty()) append_attribute(xml, "ctype", code.type);
  if (!code.equivalent.empty()) append_attribute(xml, "equiv-text", code.equivalent);
  if (code.kind == CodeKind::kOpen) {
    xml += '>';
  } else if (code.shown.empty()) {
    xml += "/>";
  } else {
    xml += '>';
    append_xml_text(xml, code.shown);
    xml += "</ph>";
  }
}

void append_context(std::string& xml, std::string_view type, std::string_view value) {
  xml += "<context context-type=\"";
  xml += type;
  xml += "\">";
  append_xml_text(xml, value);
  xml += "</context>";
}

// Where the author finds the text. For a document that was prepared from another one, the line is left out unless the
// filter knows it, because it would be wrong.
void append_location(std::string& xml, const Segment& segment, const TudHeader& header) {
  const bool is_author_document = header.set.author_document.empty() || header.set.author_document == header.original;
  const std::int64_t line = is_author_document ? segment.line : segment.author_line;
  xml += "<context-group purpose=\"location\">";
  append_context(xml, "sourcefile", readable_name(is_author_document ? header.original : header.set.author_document));
  if (line != 0) append_context(xml, "linenumber", std::to_string(line));
  if (!segment.element.empty()) append_context(xml, "element", segment.element);
  xml += "</context-group>";
}

void append_unit_note(std::string& xml, std::string_view from, std::string_view text) {
  if (text.empty()) return;
  xml += "<note";
  if (!from.empty()) append_attribute(xml, "from", from);
  xml += '>';
  append_xml_text(xml, text);
  xml += "</note>";
}

// "{1} <%= name %>": some editors show a code's number only.
std::string list_of_codes(const Segment& segment) {
  std::string list;
  std::size_t count = 0;
  for (const InlineCode& code : segment.codes) {
    const std::string& meaning = code.equivalent.empty() ? code.shown : code.equivalent;
    if (code.kind == CodeKind::kClose || meaning.empty()) continue;
    if (++count > kMostListed) return list += " ...";
    if (!list.empty()) list += "  ";
    list += '{' + std::to_string(code.id) + "} " + meaning;
  }
  return list;
}

}  // namespace

void append_tud_start(std::string& xml, const TudHeader& header) {
  xml += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xliff version=\"1.2\"";
  append_attribute(xml, "xmlns", kXliffNamespace);
  xml += ">\n<file";
  append_attribute(xml, "original", readable_name(header.original));
  append_attribute(xml, "source-language", bcp47_of(header.source_language));
  append_attribute(xml, "target-language", bcp47_of(header.target_language));
  append_attribute(xml, "datatype", header.datatype);
  append_attribute(xml, "tool-id", kToolId);
  xml += ">\n<header>\n<skl><external-file";
  append_attribute(xml, "href", uri_of(header.skeleton));
  xml += "/></skl>\n<tool";
  append_attribute(xml, "tool-id", kToolId);
  append_attribute(xml, "tool-name", "KAVO reference suite");
  xml += "/>\n";
  for (const HeaderField& field : header_fields()) {
    const std::string value = field.text(header);
    if (value.empty()) continue;
    xml += "<note from=\"K19Suite\">";
    xml += field.name;
    xml += '=';
    append_xml_text(xml, value);
    xml += "</note>\n";
  }
  xml += "</header>\n<body>\n";
}

void append_tud_unit(std::string& xml, std::uint32_t number, const Segment& segment, const TudHeader& header) {
  xml += "<trans-unit";
  append_attribute(xml, "id", std::to_string(number));
  if (!segment.name.empty()) append_attribute(xml, "resname", segment.name);
  if (segment.locked) append_attribute(xml, "translate", "no");
  if (has_delicate_blanks(segment.text)) append_attribute(xml, "xml:space", "preserve");
  append_attribute(xml, "extradata", std::to_string(segment.line) + ":" + std::to_string(segment.column));
  xml += "><source>";
  const std::size_t begin = xml.size();
  std::size_t code = 0;
  CodedTextReader reader(segment.text);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      append_code_element(xml, segment.codes[code++]);
    else
      append_xml_text(xml, part.text);
  }
  const std::size_t end = xml.size();
  xml += "</source><target";
  const XliffState state =
      xliff_state_of(segment.locked ? TranslationStatus::kLocked : TranslationStatus::kUntranslated);
  append_attribute(xml, "state", state.state);
  xml += '>';
  xml.append(xml, begin, end - begin);
  xml += "</target>";
  append_location(xml, segment, header);
  append_unit_note(xml, "", segment.note);
  append_unit_note(xml, kAuthorNote, segment.comment);
  append_unit_note(xml, kToolId, list_of_codes(segment));
  xml += "</trans-unit>\n";
}

void append_tud_end(std::string& xml) { xml += "</body>\n</file>\n</xliff>\n"; }

XliffState xliff_state_of(TranslationStatus status) {
  switch (status) {
    case TranslationStatus::kUntranslated:
      return {"new", ""};
    case TranslationStatus::kLocked:
      return {"final", ""};
    case TranslationStatus::kTranslated:
      return {"translated", ""};
    case TranslationStatus::kFuzzy:
      return {"needs-review-translation", "fuzzy-match"};
    case TranslationStatus::kExact:
      return {"translated", "exact-match"};
    case TranslationStatus::kApproved:
      return {"signed-off", ""};
  }
  return {"new", ""};
}

}  // namespace kavo
