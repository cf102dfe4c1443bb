// What a text of an RTF document is known by, whatever is edited around it: a name and a place without numbers.
//
// A bookmark names the first text behind its beginning in the same paragraph, so no two texts have one bookmark. Names
// that begin with "_" are the word processor's own: it makes new ones whenever it builds a table of contents.
#include <utility>

#include "formats/rtf/text_reader.h"
#include "platform/trimmed.h"
#include "suite/filters/rtf/rtf_extraction.h"

namespace kavo::rtf {
namespace {

constexpr std::size_t kLongestNameBytes = 1024;  // as the document writes it

}  // namespace

// Data have begun, and `word` is that of their destination.
void RtfExtraction::begin_name(std::string_view word) {
  name_ = word == "bkmkstart" ? Name::kBookmark : word == "ffname" ? Name::kFormField : Name::kNone;
  name_bytes_.clear();
}

void RtfExtraction::take_name(const Token& token) {
  if (data_depth_ == 0) return end_name();
  const bool is_text = token.kind == TokenKind::kText || token.kind == TokenKind::kByte || token.is_word("u");
  if (data_depth_ == 1 && is_text && name_bytes_.size() + token.bytes.size() <= kLongestNameBytes)
    name_bytes_ += token.bytes;
}

void RtfExtraction::end_name() {
  std::string text;
  TextReader reader(name_bytes_, group().coding, group().fallback);
  for (TextUnit unit; reader.next(unit);) text += unit.text;
  const std::string_view name = trimmed(text, " ");
  if (std::exchange(name_, Name::kNone) == Name::kFormField)
    form_field_ = name;
  else if (story().name.empty() && !name.starts_with('_'))
    story().name = name;
}

// Names a segment of a story's paragraph and says what it stands in: "header/heading 1", "cell".
void RtfExtraction::identify(Segment& segment, Story& story) const {
  segment.name = std::exchange(story.name, {});
  segment.element = story.word;
  const auto add = [&](std::string_view step) {
    if (!step.empty() && !segment.element.empty()) segment.element += '/';
    segment.element += step;
  };
  // Titles and entries have no paragraphs.
  if (story.is_plain) return;
  if (story.is_in_cell) add("cell");
  add(styles_.paragraph_style(story.style));
}

}  // namespace kavo::rtf
