#include "office/libreoffice/office_xml.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <exception>
#include <memory>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// Whether XML can hold a unit as it is. It cannot hold most control characters, lone surrogates, U+FFFE and U+FFFF.
bool is_xml_character(std::u16string_view text, std::size_t i) {
  const char16_t unit = text[i];
  if (unit < 0x20) return unit == u'\t';
  if (unit >= 0xD800 && unit < 0xDC00) return i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
  if (unit >= 0xDC00 && unit < 0xE000) return i > 0 && text[i - 1] >= 0xD800 && text[i - 1] < 0xDC00;
  return unit < 0xFFFE;
}

void append_escaped(std::string& xml, std::u16string_view text) {
  for (const char c : to_utf8(text)) {
    switch (c) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      case '\t':
        xml += "&#9;";
        break;
      default:
        xml += c;
    }
  }
}

void append_content(std::string& xml, std::u16string_view text) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (is_xml_character(text, i)) continue;
    append_escaped(xml, text.substr(begin, i - begin));
    xml += text[i] == u'\n' ? "<br/>" : "<char code=\"" + std::to_string(text[i]) + "\"/>";
    begin = i + 1;
  }
  append_escaped(xml, text.substr(begin));
}

// As the value of an attribute.
void append_name(std::string& xml, std::u16string_view name) {
  std::u16string known(name);
  for (std::size_t i = 0; i < known.size(); ++i)
    if (!is_xml_character(known, i)) known[i] = u' ';
  append_escaped(xml, known);
}

std::string run_list(std::span<const TextRun> runs) {
  std::string list;
  for (const TextRun& run : runs) {
    if (!list.empty()) list += ' ';
    if (run.kind == TextRun::Kind::kText)
      list += std::to_string(run.text.size());
    else
      list += run.kind == TextRun::Kind::kLink ? "link" : "field";
  }
  return list;
}

bool parse_number(std::string_view text, std::size_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

class Reader {
 public:
  explicit Reader(std::u16string_view path)
      : path_(path), file_(path), parser_(XML_ParserCreate(nullptr), XML_ParserFree) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), on_start, on_end);
    XML_SetCharacterDataHandler(parser_.get(), on_text);
    XML_SetEntityDeclHandler(parser_.get(), on_entity);
  }

  TranslatedOfficeXml read() {
    for (bool is_last = false; !is_last;) {
      file_.more();
      is_last = file_.exhausted();
      const std::string_view block = file_.window();
      const XML_Status status = XML_Parse(parser_.get(), block.data(), static_cast<int>(block.size()), is_last);
      file_.consume(block.size());
      if (thrown_) std::rethrow_exception(thrown_);
      if (status != XML_STATUS_OK) refuse(to_utf16(XML_ErrorString(XML_GetErrorCode(parser_.get()))));
    }
    return std::move(result_);
  }

 private:
  [[noreturn]] void refuse(const std::u16string& reason) const {
    throw failure(FailureNumber::kInvalidCall,
                  path_ +
                      to_utf16(", line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) + ", column " +
                               std::to_string(XML_GetCurrentColumnNumber(parser_.get()) + 1) + ": ") +
                      reason);
  }

  // The parser is written in C, so an exception must wait until it has returned.
  template <class Step>
  static void guarded(void* self, Step&& step) {
    Reader& reader = *static_cast<Reader*>(self);
    if (reader.thrown_) return;
    try {
      step(reader);
    } catch (...) {
      reader.thrown_ = std::current_exception();
      XML_StopParser(reader.parser_.get(), XML_FALSE);
    }
  }
  static void XMLCALL on_start(void* self, const XML_Char* name, const XML_Char** attributes) {
    guarded(self, [&](Reader& reader) { reader.start(name, attributes); });
  }
  static void XMLCALL on_end(void* self, const XML_Char* name) {
    guarded(self, [&](Reader& reader) { reader.end(name); });
  }
  static void XMLCALL on_text(void* self, const XML_Char* text, int length) {
    guarded(self, [&](Reader& reader) { reader.text({text, static_cast<std::size_t>(length)}); });
  }
  static void XMLCALL on_entity(void* self, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                                const XML_Char*, const XML_Char*, const XML_Char*) {
    guarded(self, [&](Reader& reader) { reader.refuse(u"the document declares entities, which are not read"); });
  }

  static std::string_view attribute(const XML_Char** attributes, std::string_view name) {
    for (; *attributes; attributes += 2)
      if (name == *attributes) return attributes[1];
    return {};
  }

  void start(std::string_view name, const XML_Char** attributes) {
    if (++depth_ == 1) {
      if (name != "kavo-office" || attribute(attributes, "version") != "1")
        refuse(u"this is not the XML of a presentation or workbook");
      start_document(attributes);
    } else if (name == "seg" && !segment_) {
      start_segment(attributes);
    } else if (segment_ && (name == "g" || name == "x")) {
      start_code(attributes);
    } else if (segment_ && name == "br") {
      append(u"\n");
    } else if (segment_ && name == "char") {
      std::size_t code = 0;
      if (!parse_number(attribute(attributes, "code"), code) || code > 0xFFFF)
        refuse(u"the code of a character is not a number from 0 to 65535");
      append(std::u16string(1, static_cast<char16_t>(code)));
    } else if (segment_) {
      refuse(u"the element \"" + to_utf16(name) + u"\" is not allowed in a text");
    }
  }

  void start_document(const XML_Char** attributes) {
    result_.kind = attribute(attributes, "kind");
    ExcelOptions& options = result_.options;
    const auto flag = [&](std::string_view name, bool default_value) {
      const std::string_view value = attribute(attributes, name);
      return value.empty() ? default_value : value == "1";
    };
    options.order = flag("order", false) ? 1 : 0;
    options.hidden = flag("hidden", options.hidden);
    options.formulas = flag("formulas", options.formulas);
    options.ungroup = flag("ungroup", options.ungroup);
    if (const std::string_view value = attribute(attributes, "tolerance"); !value.empty())
      options.tolerance = to_utf16(value);
  }

  void start_segment(const XML_Char** attributes) {
    const std::string place(attribute(attributes, "place"));
    const auto [entry, is_new] = result_.texts.try_emplace(place);
    if (place.empty() || !is_new) refuse(u"a text has no place, or the place of an earlier text");
    segment_ = &entry->second;
    segment_->check = attribute(attributes, "check");
    std::string_view list = attribute(attributes, "runs");
    while (!list.empty()) {
      const std::size_t end = std::min(list.find(' '), list.size());
      const std::string_view word = list.substr(0, end);
      TranslatedText::Run run;
      run.length = 1;
      if (word == "link")
        run.kind = TextRun::Kind::kLink;
      else if (word == "field")
        run.kind = TextRun::Kind::kField;
      else if (!parse_number(word, run.length))
        refuse(u"the list of a text's runs cannot be read");
      segment_->runs.push_back(run);
      list.remove_prefix(std::min(end + 1, list.size()));
    }
    if (segment_->runs.empty()) refuse(u"a text has no list of its runs");
    run_ = 0;
  }

  void start_code(const XML_Char** attributes) {
    std::size_t id = 0;
    if (!parse_number(attribute(attributes, "id"), id) || id < 1 || id > segment_->runs.size())
      refuse(u"the exported text did not have this inline code");
    run_ = id - 1;
    segment_->pieces.push_back({run_, u""});
    is_new_piece_ = false;
  }

  void end(std::string_view name) {
    --depth_;
    if (name == "seg") segment_ = nullptr;
    // Text after a code keeps the formatting of the code.
    if (name == "g" || name == "x") is_new_piece_ = true;
  }

  void text(std::string_view text) {
    if (!segment_) return;
    // A line break of the text is an element. A line break of the file comes from an editor.
    std::u16string content = to_utf16(text);
    std::ranges::replace(content, u'\n', u' ');
    append(content);
  }

  void append(const std::u16string& text) {
    std::vector<TextPiece>& pieces = segment_->pieces;
    const bool can_hold_text = segment_->runs[run_].kind != TextRun::Kind::kField;
    if (pieces.empty() || !can_hold_text || (is_new_piece_ && segment_->runs[run_].kind == TextRun::Kind::kLink)) {
      // A field or link cannot take this text, so the nearest text run gets it.
      run_ = text_run_near(run_);
      pieces.push_back({run_, u""});
    }
    is_new_piece_ = false;
    pieces.back().text += text;
  }

  std::size_t text_run_near(std::size_t run) const {
    const auto& runs = segment_->runs;
    const auto is_text = [&](std::size_t i) { return i < runs.size() && runs[i].kind == TextRun::Kind::kText; };
    if (is_text(run)) return run;
    for (std::size_t distance = 1; distance < runs.size(); ++distance) {
      if (is_text(run + distance)) return run + distance;
      if (distance <= run && is_text(run - distance)) return run - distance;
    }
    refuse(u"there is text, but the exported text consisted of links and fields only");
  }

  std::u16string path_;
  BlockReader file_;
  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
  TranslatedOfficeXml result_;
  TranslatedText* segment_ = nullptr;
  std::size_t run_ = 0;
  std::size_t depth_ = 0;
  bool is_new_piece_ = false;
  std::exception_ptr thrown_;
};

}  // namespace

OfficeXmlWriter::OfficeXmlWriter(std::u16string_view path, std::string_view kind, const ExcelOptions* options)
    : file_(path) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kavo-office version=\"1\" kind=\"";
  xml += kind;
  if (options) {
    xml += options->order == 1 ? "\" order=\"1" : "\" order=\"0";
    xml += options->hidden ? "\" hidden=\"1" : "\" hidden=\"0";
    xml += options->formulas ? "\" formulas=\"1" : "\" formulas=\"0";
    xml += options->ungroup ? "\" ungroup=\"1" : "\" ungroup=\"0";
    xml += "\" tolerance=\"";
    append_escaped(xml, options->tolerance);
  }
  file_.write(xml + "\" xml:space=\"preserve\">\n");
}

void OfficeXmlWriter::add_text(std::string_view place, std::span<const TextRun> runs, std::u16string_view style) {
  std::string xml = "<seg place=\"" + std::string(place) + "\" check=\"" + check_of(joined_text(runs)) + "\" runs=\"" +
                    run_list(runs) + "\"";
  if (!style.empty()) {
    xml += " style=\"";
    append_name(xml, style);
    xml += '"';
  }
  xml += '>';
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const std::string id = std::to_string(i + 1);
    if (runs[i].kind == TextRun::Kind::kField) {
      xml += "<x id=\"" + id + "\"/>";
    } else if (runs.size() == 1) {
      append_content(xml, runs[i].text);
    } else {
      xml += "<g id=\"" + id + "\">";
      append_content(xml, runs[i].text);
      xml += "</g>";
    }
  }
  file_.write(xml + "</seg>\n");
}

void OfficeXmlWriter::add_name(std::string_view place, std::u16string_view name) {
  std::string xml = "<place path=\"" + std::string(place) + "\" name=\"";
  append_name(xml, name);
  file_.write(xml + "\"/>\n");
}

void OfficeXmlWriter::add_formula(std::string_view place, std::u16string_view formula) {
  std::string xml = "<formula place=\"" + std::string(place) + "\">";
  append_content(xml, formula);
  file_.write(xml + "</formula>\n");
}

void OfficeXmlWriter::add_left_out(std::string_view place, std::size_t count) {
  file_.write("<left-out place=\"" + std::string(place) + "\" texts=\"" + std::to_string(count) + "\"/>\n");
}

void OfficeXmlWriter::commit() {
  file_.write("</kavo-office>\n");
  file_.commit();
}

TranslatedOfficeXml read_office_xml(std::u16string_view path) { return Reader(path).read(); }

}  // namespace kavo
