// The writing half of the bilingual document's format: new documents.
#include <algorithm>

#include "formats/text/text_coding.h"
#include "formats/xml/xml_text.h"
#include "suite/document/tud_format.h"

namespace kavo {
namespace {

// Who the comments of a document's author come from.
constexpr std::string_view kAuthorNote = "author";

// More codes of a unit are not listed in its note: nobody reads on.
constexpr std::size_t kMostListed = 30;

void append_note(std::string& xml, std::string_view name, std::string_view value) {
  xml += "<note from=\"K19Suite\">";
  xml += name;
  xml += '=';
  append_xml_text(xml, value);
  xml += "</note>\n";
}

void append_attribute(std::string& xml, std::string_view name, std::string_view value) {
  xml += ' ';
  xml += name;
  xml += "=\"";
  append_xml_attribute(xml, value);
  xml += '"';
}

void append_percent(std::string& uri, char c) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  uri += '%';
  uri += digits[byte >> 4];
  uri += digits[byte & 15];
}

// A reference to a file beside the document is a URI.
std::string uri_of(std::string_view file_name) {
  constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string uri;
  for (const char c : file_name) {
    if (plain.find(c) != std::string_view::npos)
      uri += c;
    else
      append_percent(uri, c);
  }
  return uri;
}

// A file name that people read: escaped as in a URI is only what XML lacks and a "%" that would be taken for an escape.
std::string readable_name(std::string_view file_name) {
  const auto is_hexadecimal = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
  };
  std::string name;
  for (std::string_view rest = file_name; !rest.empty();) {
    const std::size_t length = utf8_character_length(rest);
    const std::string_view character = rest.substr(0, std::max<std::size_t>(length, 1));
    const bool looks_escaped = rest.size() > 2 && is_hexadecimal(rest[1]) && is_hexadecimal(rest[2]);
    if (length == 0 || (character == "%" && looks_escaped) || !is_xml_character(utf8_code_point(character)))
      for (const char c : character) append_percent(name, c);
    else
      name += character;
    rest.remove_prefix(character.size());
  }
  return name;
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

// Where its author finds the text. The line is left out for a document that was prepared from another one, unless the
// filter knows it: there it would be a wrong one.
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
  append_note(xml, "source-format", header.source_format);
  append_note(xml, "filter", header.filter);
  append_note(xml, "source-language", header.source_language);
  append_note(xml, "target-language", header.target_language);
  append_note(xml, "source-code-page", std::to_string(header.source_code_page));
  append_note(xml, "target-code-page", std::to_string(header.target_code_page));
  append_note(xml, "checksum", std::to_string(header.checksum));
  if (!header.set.mark.empty()) append_note(xml, "mark", header.set.mark);
  if (!header.set.author_document.empty()) {
    append_note(xml, "author-document", readable_name(header.set.author_document));
    append_note(xml, "author-checksum", std::to_string(header.set.author_checksum));
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
