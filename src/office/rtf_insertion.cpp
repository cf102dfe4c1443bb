#include "office/rtf_insertion.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "office/rtf_text.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// First place before `limit` where a marker starts.
const char* find_marker(const char* p, const char* limit, const char* end) {
  const char* const search_end = ahead(limit, 1, end);
  for (;; ++p) {
    p = find_pair<'{', '\\'>(p, search_end);
    if (p == search_end) return limit;
    if (begins_with(p, end, kMarkerStart)) return p;
  }
}

}  // namespace

RtfInsertion::RtfInsertion(std::u16string_view rtf_file, std::u16string_view temporary_file,
                           std::u16string_view object_file)
    : reader_(open_rtf(rtf_file)), text_(rtf_file, temporary_file), object_path_(object_file) {}

void RtfInsertion::run(ProgressEvent& progress, MessageList& messages) {
  for_each_pass(reader_, progress,
                [&](const char* p, const char* limit, const char* end) { return scan(p, limit, end, messages); });
  if (objects_ && missing_ != 0)
    messages.push_back({u"The object file lacks " + to_utf16(std::to_string(missing_)) +
                        u" of the document's objects, the first at the marker " + first_missing_ +
                        u": name the object file that was made from this document"});
  if (missing_ == 0) report_unused_objects(messages);
  reader_ = BlockReader();  // Windows replaces no file that is open
  text_.commit();
}

const char* RtfInsertion::scan(const char* p, const char* limit, const char* end, MessageList& messages) {
  while (p < limit) {
    const char* const start = find_marker(p, limit, end);
    text_.write({p, static_cast<std::size_t>(start - p)});
    if (start == limit) return limit;
    if (!objects_tried_) open_objects(messages);
    const auto marker = read_marker(start, end);
    p = start + (marker ? marker->length : kMarkerStart.size());
    if (marker && objects_ && objects_->copy(marker->number, text_)) {
      ++count_;
    } else {
      const std::string_view kept(start, static_cast<std::size_t>(p - start));
      if (missing_++ == 0) first_missing_ = to_utf16(kept);
      text_.write(kept);
    }
  }
  return p;
}

void RtfInsertion::open_objects(MessageList& messages) {
  objects_tried_ = true;
  try {
    objects_.emplace(object_path_);
  } catch (const failure& reason) {
    messages.push_back({u"The object file cannot be opened: " + reason.description()});
  }
}

void RtfInsertion::report_unused_objects(MessageList& messages) {
  if (!objects_tried_ && ports().files->info(object_path_)) open_objects(messages);
  if (!objects_ || objects_->never_copied() == 0) return;
  messages.push_back({to_utf16(std::to_string(objects_->never_copied())) + u" of the " +
                      to_utf16(std::to_string(objects_->size())) +
                      u" objects of the object file have no marker in the document and are left out"});
}

bool holds_object_markers(std::u16string_view path) {
  BlockReader document(path);
  ProgressEvent no_progress;
  bool found = false;
  for_each_pass(document, no_progress, [&](const char* p, const char* limit, const char* end) {
    found = found || find_marker(p, limit, end) != limit;
    return limit;
  });
  return found;
}

}  // namespace kavo
