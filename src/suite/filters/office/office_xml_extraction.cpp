#include "suite/filters/office/office_xml_extraction.h"

#include <algorithm>
#include <charconv>

#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo::office {
namespace {

constexpr std::string_view kEndOfText = "</seg>";
constexpr std::string_view kFormatted = "x-run";
constexpr std::string_view kLink = "link";
constexpr std::string_view kField = "x-field";
constexpr std::string_view kLineBreak = "lb";
constexpr std::string_view kControl = "x-control";

}  // namespace

OfficeXmlExtraction::OfficeXmlExtraction(BlockReader& document, const ConversionSettings& settings,
                                         ExtractionSink& sink)
    : document_(document),
      settings_(settings),
      sink_(sink),
      coding_(kUtf8CodePage),
      builder_(coding_),
      excluded_(settings.options) {}

void OfficeXmlExtraction::run(ProgressEvent& progress) {
  for (;;) {
    const std::size_t tag = std::min(document_.window().find('<'), document_.window().size());
    skip(tag);
    if (document_.window().empty()) {
      if (!read_more()) break;
      progress.report(document_.percent());
      continue;
    }
    read_element(read_tag());
  }
  if (!has_root_) refuse(u"this is not the XML of a presentation or workbook");
}

bool OfficeXmlExtraction::read_more() {
  if (!document_.more()) return false;
  lines_.feed(document_.window().substr(static_cast<std::size_t>(lines_.fed() - document_.position())));
  return true;
}

// Passes on bytes that stay unchanged.
void OfficeXmlExtraction::skip(std::size_t count) {
  if (count == 0) return;
  sink_.skeleton(document_.window().substr(0, count));
  document_.consume(count);
}

void OfficeXmlExtraction::refuse(const std::u16string& reason) {
  const PagePlace place = lines_.at(document_.position());
  throw failure(
      FailureNumber::kInvalidCall,
      to_utf16("Line " + std::to_string(place.line) + ", column " + std::to_string(place.column) + ": ") + reason);
}

Tag OfficeXmlExtraction::read_tag() {
  for (;;) {
    const auto length = tag_length(document_.window());
    if (length && *length <= kLongestTag) return tag_of(document_.window().substr(0, *length));
    if (length || document_.window().size() > kLongestTag || !read_more()) refuse(u"a tag does not end");
  }
}

void OfficeXmlExtraction::read_element(const Tag& tag) {
  if (!has_root_ && !tag.name.empty()) {
    if (tag.name != "kavo-office" || tag.attribute("version") != "1")
      refuse(u"this is not the XML of a presentation or workbook");
    has_root_ = true;
  }
  if (tag.bytes.starts_with("<!D")) refuse(u"the document has a document type, which is not read");
  if (tag.name == "place") enter(tag);
  if (tag.name == "left-out" && settings_.tell)
    settings_.tell({to_utf16(tag.attribute("place")) + u": " + to_utf16(tag.attribute("texts")) +
                    u" texts follow more blank cells than the options of workbooks allow; they are left out"});
  if (tag.name == "seg" && !tag.is_end && !tag.is_empty)
    read_text(tag);
  else
    skip(tag.bytes.size());
}

void OfficeXmlExtraction::enter(const Tag& tag) {
  const std::string_view place = tag.attribute("path");
  while (!names_.empty() && !is_within(place, names_.back().place)) names_.pop_back();
  if (names_.size() < kDeepestPlace) names_.push_back({std::string(place), tag.text_of("name")});
}

// "sheet Prices, shape Title 1".
std::string OfficeXmlExtraction::note_of(std::string_view place) const {
  std::string note;
  for (const Name& name : names_) {
    if (!is_within(place, name.place)) break;
    const std::string kind = kind_of_place(name.place);
    const std::size_t last = kind.rfind('/');
    if (!note.empty()) note += ", ";
    note += kind.substr(last == kind.npos ? 0 : last + 1) + " " + name.text;
  }
  return note;
}

std::string_view OfficeXmlExtraction::sheet_of(std::string_view place) const {
  const bool is_known = !names_.empty() && is_within(place, names_.front().place);
  return is_known ? std::string_view(names_.front().text) : std::string_view();
}

void OfficeXmlExtraction::read_text(const Tag& start) {
  const PagePlace begin = lines_.at(document_.position() + start.bytes.size());
  builder_.start(begin.line, begin.column);
  const std::string_view place = start.attribute("place");
  builder_.name(place);
  const std::string kind = kind_of_place(place);
  builder_.element(kind);
  builder_.context(kind);
  builder_.note(note_of(place));
  const bool is_excluded = excluded_.has(place, sheet_of(place), start.text_of("style"));
  runs_ = run_kinds(start.attribute("runs"));
  skip(start.bytes.size());
  const std::size_t length = end_of_text();
  add_content(document_.window().substr(0, length));
  if (builder_.has_text() && !is_excluded) {
    sink_.segment(builder_.finish());
    document_.consume(length);
  } else {
    skip(length);
  }
  skip(kEndOfText.size());
}

// Where the end tag of the text begins. No byte is searched again when more is read.
std::size_t OfficeXmlExtraction::end_of_text() {
  for (std::size_t from = 0;;) {
    const std::size_t end = document_.window().find(kEndOfText, from);
    if (end != std::string_view::npos) return end;
    from = document_.window().size() - std::min(document_.window().size(), kEndOfText.size() - 1);
    if (from > kLongestText || !read_more()) refuse(u"a text does not end, or is longer than 8 MB");
  }
}

void OfficeXmlExtraction::add_content(std::string_view content) {
  open_codes_.clear();
  while (!content.empty()) {
    std::size_t length = 0;
    if (content[0] == '<') {
      length = add_tag(content);
    } else if (content[0] == '&') {
      length = add_reference(content);
    } else if (content[0] == '\n' || content[0] == '\r') {
      // In this XML a line break of the text is an element, so this line end comes from an editor.
      length = content.starts_with("\r\n") ? 2 : 1;
      builder_.add_text(" ", content.substr(0, length));
    } else {
      length = std::min(content.find_first_of("<&\r\n"), content.size());
      builder_.add_text(content.substr(0, length));
    }
    content.remove_prefix(length);
  }
}

std::size_t OfficeXmlExtraction::add_tag(std::string_view content) {
  const auto length = tag_length(content);
  if (!length) refuse(u"a tag in a text does not end");
  const Tag tag = tag_of(content.substr(0, *length));
  const auto standalone = [&](std::string_view type, std::string_view shown, bool required) {
    builder_.add_code(CodeKind::kStandalone, type, shown, tag.bytes, required);
  };
  if (tag.name == "g" && tag.is_end) {
    if (open_codes_.empty()) refuse(u"an inline code of a text ends that has not begun");
    builder_.add_code(CodeKind::kClose, open_codes_.back(), "", tag.bytes, open_codes_.back() == kLink);
    open_codes_.pop_back();
  } else if (tag.name == "g" && tag.is_empty) {
    standalone(kFormatted, "", run_of(tag) != RunKind::kText);
  } else if (tag.name == "g") {
    open_codes_.push_back(run_of(tag) == RunKind::kLink ? kLink : kFormatted);
    builder_.add_code(CodeKind::kOpen, open_codes_.back(), "", tag.bytes, open_codes_.back() == kLink);
  } else if (tag.name == "x") {
    standalone(kField, "", run_of(tag) == RunKind::kField);
  } else if (tag.name == "br") {
    standalone(kLineBreak, "", false);
  } else if (tag.name == "char") {
    standalone(kControl, "[" + std::string(tag.attribute("code")) + "]", false);
  } else {
    refuse(u"the element \"" + to_utf16(tag.name) + u"\" is not allowed in a text");
  }
  return *length;
}

std::size_t OfficeXmlExtraction::add_reference(std::string_view content) {
  const std::size_t length = reference_length(content);
  const std::string character = character_of(content.substr(0, length));
  if (character.empty()) refuse(u"a text holds a reference that is not known");
  builder_.add_text(character, content.substr(0, length));
  return length;
}

RunKind OfficeXmlExtraction::run_of(const Tag& tag) {
  const std::string_view id = tag.attribute("id");
  std::size_t number = 0;
  std::from_chars(id.data(), id.data() + id.size(), number);
  if (number < 1 || number > runs_.size()) refuse(u"a text has an inline code that its list of runs does not have");
  return runs_[number - 1];
}

}  // namespace kavo::office
