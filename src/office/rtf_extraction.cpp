#include "office/rtf_extraction.h"

#include <algorithm>
#include <charconv>

#include "common/byte_scan.h"
#include "common/object_file_guard.h"
#include "office/object_file.h"
#include "office/rtf_text.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

std::string_view between(const char* p, const char* end) { return {p, static_cast<std::size_t>(end - p)}; }

[[noreturn]] void refuse_markers() {
  throw failure(FailureNumber::kInvalidCall,
                u"The document already holds object markers: insert its objects before extracting again");
}

// First place before `limit` where a group to move or a marker starts.
const char* find_start(const char* p, const char* limit, const char* end) {
  const char* const search_end = ahead(limit, 1, end);
  for (;; ++p) {
    p = find_pair<'{', '\\'>(p, search_end);
    if (p == search_end) return limit;
    if (begins_with(p, end, "{\\pict") || begins_with(p, end, "{\\object") || begins_with(p, end, kMarkerStart))
      return p;
  }
}

struct DataWord {
  std::size_t length;       // of the word with the blank that ends it
  std::uint64_t data_size;  // bytes
};

// "\binN" at p. No RTF can mean a number of more than ten digits; the word then announces no data.
std::optional<DataWord> read_data_word(const char* p, const char* end) {
  constexpr std::string_view word = "\\bin";
  constexpr std::ptrdiff_t kMostDigits = 10;
  if (!begins_with(p, end, word)) return std::nullopt;
  const char* const digits = p + word.size();
  std::uint64_t size = 0;
  const char* after = std::from_chars(digits, ahead(digits, kMostDigits, end), size).ptr;
  if (after == digits || (after != end && *after >= '0' && *after <= '9')) return std::nullopt;
  if (after != end && *after == ' ') ++after;
  return DataWord{static_cast<std::size_t>(after - p), size};
}

// Opens the object file. Its failure names the object file, because otherwise it would seem to be about the document.
PendingFile open_object_file(std::u16string_view path) {
  try {
    return PendingFile(path);
  } catch (const failure& reason) {
    throw failure(reason.number(), u"The object file cannot be made: " + reason.description(), reason.source());
  }
}

// Refuses to lose old objects. The failure names the file.
void refuse_to_lose_old_objects(PendingFile& objects) {
  try {
    refuse_to_lose_objects(objects);
  } catch (const failure& reason) {
    throw failure(reason.number(),
                  u"The object file " + to_utf16(path_to_host(objects.final_path())) + u" is not replaced. " +
                      reason.description(),
                  reason.source());
  }
}

}  // namespace

RtfExtraction::RtfExtraction(std::u16string_view rtf_file, std::u16string_view temporary_file,
                             std::u16string_view object_file)
    : reader_(open_rtf(rtf_file)), text_(rtf_file, temporary_file), objects_(open_object_file(object_file)) {}

void RtfExtraction::run(ProgressEvent& progress, bool overwrites_objects) {
  for_each_pass(reader_, progress,
                [this](const char* p, const char* limit, const char* end) { return scan(p, limit, end); });
  // The document ended inside a group: the closing marker still needs a line of its own.
  if (state_ == State::kGroup || state_ == State::kData) objects_.write(kLineEnd);
  write_marker_line(count_ + 1);
  objects_.complete();
  // A marker line inside an object would be taken for the object's end.
  if (RtfObjectFile(objects_.temporary_path()).size() != count_) refuse_markers();
  if (!overwrites_objects) refuse_to_lose_old_objects(objects_);
  reader_ = BlockReader();  // Windows replaces no file that is open
  objects_.commit();
  text_.commit();
}

void RtfExtraction::write_marker_line(std::uint64_t number) {
  objects_.write(marker_text(number));
  objects_.write(kLineEnd);
}

const char* RtfExtraction::scan(const char* p, const char* limit, const char* end) {
  while (p < limit) {
    switch (state_) {
      case State::kText:
        p = scan_text(p, limit, end);
        break;
      case State::kGroup:
        p = scan_group(p, limit, end);
        break;
      case State::kData:
        p = scan_data(p, limit);
        break;
    }
  }
  return p;
}

const char* RtfExtraction::scan_text(const char* p, const char* limit, const char* end) {
  const char* const start = find_start(p, limit, end);
  text_.write(between(p, start));
  if (start == limit) return limit;
  if (begins_with(start, end, kMarkerStart)) refuse_markers();
  write_marker_line(++count_);
  text_.write(marker_text(count_));
  depth_ = 0;
  state_ = State::kGroup;
  return start;
}

const char* RtfExtraction::scan_group(const char* p, const char* limit, const char* end) {
  const char* const begin = p;
  while (p < limit) {
    p = find_any<'{', '}', '\\'>(p, limit);
    if (p == limit) break;
    if (*p == '{') {
      ++depth_;
      ++p;
    } else if (*p == '}') {
      ++p;
      if (--depth_ == 0) {
        objects_.write(between(begin, p));
        objects_.write(kLineEnd);
        state_ = State::kText;
        return p;
      }
    } else if (const auto word = read_data_word(p, end)) {
      p += word->length;
      objects_.write(between(begin, p));
      data_left_ = word->data_size;
      state_ = State::kData;
      return p;
    } else {
      // An escaped backslash is skipped as a pair, so that the second one does not begin a control word.
      p += begins_with(p, end, "\\\\") ? 2 : 1;
    }
  }
  objects_.write(between(begin, p));
  return p;
}

const char* RtfExtraction::scan_data(const char* p, const char* limit) {
  const auto count = std::min<std::uint64_t>(data_left_, static_cast<std::uint64_t>(limit - p));
  objects_.write({p, static_cast<std::size_t>(count)});
  data_left_ -= count;
  if (data_left_ == 0) state_ = State::kGroup;
  return p + count;
}

bool holds_objects(std::u16string_view path) {
  BlockReader document(path);
  ProgressEvent no_progress;
  bool found = false;
  for_each_pass(document, no_progress, [&](const char* p, const char* limit, const char* end) {
    found = found || find_start(p, limit, end) != limit;
    return limit;
  });
  return found;
}

}  // namespace kavo
