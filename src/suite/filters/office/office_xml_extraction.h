// Takes the XML of a presentation or workbook apart: the content of each text becomes a segment, everything else
// skeleton. A text of only blanks and fields stays in the skeleton, and so does one that the options exclude.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/progress_event.h"
#include "formats/office/office_xml.h"
#include "formats/text/line_counter.h"
#include "suite/filters/filter.h"
#include "suite/filters/office/excluded_cells.h"

namespace kavo::office {

inline constexpr std::size_t kLongestTag = 64 * 1024;         // bytes
inline constexpr std::size_t kDeepestPlace = 16;              // of the places with names
inline constexpr std::size_t kLongestText = 8 * 1024 * 1024;  // with its codes

class OfficeXmlExtraction {
 public:
  // All references must outlive the object.
  OfficeXmlExtraction(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink);
  // Throws `failure` 5 with line and column for anything that is not this XML.
  void run(ProgressEvent& progress);

 private:
  // A place and its name for people.
  struct Name {
    std::string place;
    std::string text;
  };

  bool read_more();
  void skip(std::size_t count);
  [[noreturn]] void refuse(const std::u16string& reason);
  Tag read_tag();
  void read_element(const Tag& tag);
  void enter(const Tag& tag);
  std::string note_of(std::string_view place) const;
  std::string_view sheet_of(std::string_view place) const;
  void read_text(const Tag& start);
  std::size_t end_of_text();
  void add_content(std::string_view content);
  std::size_t add_tag(std::string_view content);
  std::size_t add_reference(std::string_view content);
  RunKind run_of(const Tag& tag);

  BlockReader& document_;
  const ConversionSettings& settings_;
  ExtractionSink& sink_;
  TextCoding coding_;
  SegmentBuilder builder_;
  LineCounter lines_;
  const ExcludedCells excluded_;
  bool has_root_ = false;
  std::vector<Name> names_;                   // of the last named place and the places around it
  std::vector<RunKind> runs_;                 // of the text
  std::vector<std::string_view> open_codes_;  // types, all literals
};

}  // namespace kavo::office
