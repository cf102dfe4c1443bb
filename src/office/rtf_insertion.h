// Puts the objects of the side file back in the place of their markers.
//
// A document without markers does not need a side file. A marker whose object is missing stays as it is, so that
// nothing is lost and the call can be repeated with the right side file. An object whose marker was deleted is left out
// with a message: the translator may have meant it, or a program may have dropped hidden text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/messages.h"
#include "common/pending_file.h"
#include "common/progress_event.h"
#include "office/object_file.h"

namespace kavo {

class RtfInsertion {
 public:
  // Opens the document; throws `failure`, as does run(), also for a document that is not RTF. The document keeps its
  // content until run() ends.
  RtfInsertion(std::u16string_view rtf_file, std::u16string_view temporary_file, std::u16string_view object_file);
  // Rewrites the whole document. Adds messages about markers that were not replaced and objects that have no marker.
  void run(ProgressEvent& progress, MessageList& messages);
  std::uint64_t count() const { return count_; }      // objects put back
  std::uint64_t missing() const { return missing_; }  // markers that stayed

 private:
  const char* scan(const char* p, const char* limit, const char* end, MessageList& messages);
  void open_objects(MessageList& messages);
  void report_unused_objects(MessageList& messages);

  BlockReader reader_;
  PendingFile text_;
  std::u16string object_path_;
  std::optional<RtfObjectFile> objects_;
  bool objects_tried_ = false;
  std::uint64_t count_ = 0;
  std::uint64_t missing_ = 0;
  std::u16string first_missing_;
};

// Whether the file contains the text of a marker. Throws `failure`.
bool holds_object_markers(std::u16string_view path);

}  // namespace kavo
