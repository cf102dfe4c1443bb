// A segment: one piece of translatable text of a document, with everything needed to put it or its translation back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text/text_coding.h"
#include "suite/document/coded_text.h"

namespace kavo {

// Bytes inside a segment that are not text: a tag, a script placeholder, an invalid byte.
struct InlineCode {
  CodeKind kind = CodeKind::kStandalone;
  std::uint32_t id = 0;   // from 1 in each segment; the two codes of a pair share one
  bool required = false;  // a translation without it cannot be rebuilt
  std::string_view type;  // XLIFF ctype ("bold", "link", "image", "lb", "x-script"), a literal; "" for none
  std::string shown;      // UTF-8: what a translator sees of a standalone code; "" for nothing
  // UTF-8: what the code stands for, in short ("<%= name %>", "https://a.org", "<b>"); "" when `shown` says it.
  std::string equivalent;
  std::size_t begin = 0;  // the code's bytes in Segment::original
  std::size_t end = 0;
};

// A translatable text inside a code of another segment (the alternative text of an image in a paragraph).
struct NestedPlace {
  std::size_t begin = 0;  // the bytes in Segment::original that it stands for
  std::size_t end = 0;
  std::uint32_t segment = 0;  // its number
};

struct Segment {
  std::string text;               // coded text
  std::string original;           // the document's bytes from the first to the last of the segment, exactly
  std::vector<InlineCode> codes;  // in the order of their references in `text`
  std::vector<NestedPlace> nested;
  std::string context;  // what the filter will need to write the translation; any bytes
  std::string name;     // UTF-8: the text's name in its document ("IDS_TITLE"); "" for none
  std::string note;     // for the translator, UTF-8; "" for none
  std::string comment;  // what the author wrote about it in the document, UTF-8; "" for none
  // UTF-8: what contains the text, as a path without numbers ("table/tr/td", "img@alt", "alert()"); "" when unknown. It
  // ends in "/name" for a name in which some characters are not allowed ("sheet/name").
  std::string element;
  std::int64_t line = 0;         // 1-based place in the document
  std::int64_t column = 0;       // 1-based, in bytes
  std::int64_t author_line = 0;  // 1-based line in the file that its author has, 0 when unknown
  bool locked = false;           // shown, but not translated
};

// Builds a segment from left to right. Each byte of it must go through exactly one of the add_ members, so that
// `original` is complete. One builder serves all segments of a document.
class SegmentBuilder {
 public:
  // The coding of the document's bytes must outlive the builder.
  explicit SegmentBuilder(const TextCoding& coding) : coding_(coding) {}

  // Drops the segment and starts a new one at a place of the document.
  void start(std::int64_t line, std::int64_t column);
  bool empty() const { return segment_.original.empty(); }
  // True when there is text other than blanks, tabs and line ends (the no-break space counts as a blank).
  bool has_text() const { return has_text_; }

  // Adds text that stands for itself. Bytes that are invalid in the document's coding, and characters that XML does not
  // have, become codes of their own.
  void add_text(std::string_view original);
  // Adds text that the document writes in another form: "é" for "&eacute;". `text` is UTF-8. A character that XML does
  // not have becomes a code.
  void add_text(std::string_view text, std::string_view original);
  // Adds bytes that only an unchanged segment keeps, such as line breaks inside a paragraph. A translation does not
  // have them.
  void add_hidden(std::string_view original);

  void add_code(CodeKind kind, std::string_view type, std::string_view shown, std::string_view original,
                bool required = false);
  // Adds a code in pieces, when it has translatable text inside: begin_code, then code_bytes and nested in any order,
  // then end_code.
  void begin_code(CodeKind kind, std::string_view type, std::string_view shown, bool required = false);
  void code_bytes(std::string_view original) { segment_.original += original; }
  // `number` is what ExtractionSink::nested_segment() returned, `original` the bytes of that segment.
  void nested(std::uint32_t number, std::string_view original);
  void end_code();
  // Sets what the last code that was begun stands for.
  void equivalent(std::string_view value);

  void context(std::string_view value) { segment_.context = value; }
  void name(std::string_view value) { segment_.name = value; }
  void note(std::string_view value) { segment_.note = value; }
  void comment(std::string_view value) { segment_.comment = value; }
  void element(std::string_view value) { segment_.element = value; }
  void author_line(std::int64_t value) { segment_.author_line = value; }
  void locked(bool value) { segment_.locked = value; }

  // Numbers the codes, pairs each closing code with the last opening one of its type (codes that do not nest properly
  // become standalone), and returns the segment, which is valid until start(). Call it once.
  const Segment& finish();

 private:
  void pair_codes();

  const TextCoding& coding_;
  Segment segment_;
  bool has_text_ = false;
};

}  // namespace kavo
