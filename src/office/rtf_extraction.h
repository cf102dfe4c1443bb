// Moves the picture and object groups of an RTF document into its object side file.
//
// One pass over the bytes in three states: text, a group being moved, and raw data inside such a group. Outside of
// groups only the start texts are looked for, as bytes: raw data that stands there is not known as such, which can at
// worst move more than a picture and never loses a byte. Inside a group braces are counted as they stand, escaped ones
// too, deliberately: hosts rely on where a group ends. Only the N bytes behind "\binN " are stepped over, for a brace
// there is data: counting it would move the rest of the document out of the translator's sight.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "common/progress_event.h"

namespace kavo {

class RtfExtraction {
 public:
  // Opens the files; throws `failure`, as does run(), also for a document that is not RTF. Nothing has a final name
  // before run() ends.
  RtfExtraction(std::u16string_view rtf_file, std::u16string_view temporary_file, std::u16string_view object_file);
  // The whole document, and both files take their names. Refuses a document that already holds the text of a marker:
  // its own objects would be lost with the side file that is replaced, or come back in the wrong place. Refuses to
  // replace a side file that holds anything else, unless `overwrites_objects`.
  void run(ProgressEvent& progress, bool overwrites_objects);
  std::uint64_t count() const { return count_; }  // groups moved

 private:
  enum class State { kText, kGroup, kData };

  const char* scan(const char* p, const char* limit, const char* end);
  const char* scan_text(const char* p, const char* limit, const char* end);
  const char* scan_group(const char* p, const char* limit, const char* end);
  const char* scan_data(const char* p, const char* limit);
  void write_marker_line(std::uint64_t number);

  BlockReader reader_;
  PendingFile text_;
  PendingFile objects_;
  State state_ = State::kText;
  std::uint64_t count_ = 0;
  std::uint64_t depth_ = 0;      // of braces inside the group
  std::uint64_t data_left_ = 0;  // bytes
};

// Whether the file holds a group that the extraction would move, or a marker. Throws `failure`.
bool holds_objects(std::u16string_view path);

}  // namespace kavo
