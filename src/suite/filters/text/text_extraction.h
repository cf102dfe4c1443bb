// Takes a text file apart: a segment for each line or for each paragraph.
//
// A paragraph is a run of lines without an empty one, up to the next bullet or change of indentation. Its lines are
// joined, and their line ends and indentations become hidden bytes. Bullets and everything around the text go into the
// skeleton. line_look.h decides which lines are one paragraph when the user does not.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/progress_event.h"
#include "formats/text/text_coding.h"
#include "suite/document/segment.h"
#include "suite/filters/filter.h"
#include "suite/filters/text/line_look.h"
#include "suite/filters/text/text_lines.h"

namespace kavo {

enum class Paragraphs : std::uint8_t {
  kLines,   // a paragraph is a line
  kBlank,   // empty lines separate paragraphs
  kFilled,  // the same where the lines are filled; every other line is a paragraph of its own
};

// kFilled for a file whose lines were filled, otherwise kLines. Looks at the first MiB from the document's place, and
// goes back there.
Paragraphs find_paragraphs(BlockReader& document, const TextCoding& coding, ProgressEvent& progress);

class TextExtraction {
 public:
  // All must outlive the object.
  TextExtraction(BlockReader& document, const TextCoding& coding, Paragraphs paragraphs, ExtractionSink& sink)
      : document_(document), coding_(coding), scan_(coding), paragraphs_(paragraphs), sink_(sink), builder_(coding) {}

  void run(ProgressEvent& progress);

 private:
  // A line of the paragraph being read; places are those of `bytes_`.
  struct Place {
    std::size_t begin = 0;
    std::size_t text = 0;
    std::size_t text_end = 0;
    std::size_t line_end = 0;
    std::size_t end = 0;
  };

  void take(const TextLines::Line& line);
  void flush();
  void write_line(const Place& place, std::size_t bullet);
  void write_paragraph();
  void write_text(std::string_view text);
  void write_joint(std::size_t line);
  std::string separator() const;
  std::size_t bullet_bytes(std::size_t line) const;
  std::string_view piece(std::size_t begin, std::size_t end) const {
    return std::string_view(bytes_).substr(begin, end - begin);
  }

  BlockReader& document_;
  const TextCoding& coding_;
  UnitScan scan_;
  Paragraphs paragraphs_;
  ExtractionSink& sink_;
  SegmentBuilder builder_;
  std::string bytes_;  // of the paragraph being read
  std::vector<Place> places_;
  ParagraphLines looks_;
  std::int64_t line_ = 1;    // where `bytes_` begins
  std::int64_t column_ = 1;  // 1-based, in bytes
};

}  // namespace kavo
