// Moves the picture and object groups of an RTF document into its object side file.
//
// One pass over the bytes in three states: text, a group being moved, and raw data inside such a group.
//
// In text only the bytes that start a group are looked for. Raw data there is not recognised: at worst something that
// is not a picture moves, too, and no byte is lost. Inside a group all braces count, deliberately also escaped ones:
// hosts rely on where a group ends. Only the N bytes after "\binN " are skipped, because a brace there is data:
// counting it could move the rest of the document out of the translator's sight.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "common/progress_event.h"

namespace kavo {

class RtfExtraction {
 public:
  // Opens the files; throws `failure`, as does run(), also for a document that is not RTF. No file has its final name
  // before run() ends.
  RtfExtraction(std::u16string_view rtf_file, std::u16string_view temporary_file, std::u16string_view object_file);
  // Reads the whole document and gives both files their names. Refuses a document that already contains the text of a
  // marker, because its objects would be lost with the side file that is replaced, or would come back in the wrong
  // place. Refuses to replace a side file with other content, unless `overwrites_objects`.
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

// Whether the file contains a group that the extraction would move, or a marker. Throws `failure`.
bool holds_objects(std::u16string_view path);

}  // namespace kavo
