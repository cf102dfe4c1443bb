#include "office/object_file.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "office/rtf_text.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// The number of the marker line at [p, end), without the line end before it.
std::optional<std::uint32_t> read_marker_line(const char* p, const char* end) {
  const auto marker = read_marker(p, end);
  if (!marker || marker->number > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  if (!begins_with(p + marker->length, end, kLineEnd)) return std::nullopt;
  return static_cast<std::uint32_t>(marker->number);
}

std::uint64_t marker_line_length(std::uint64_t number) { return marker_text(number).size() + kLineEnd.size(); }

}  // namespace

RtfObjectFile::RtfObjectFile(std::u16string_view path) : reader_(path) {
  find_marker_lines();
  index_.sort();
  is_copied_.resize(size());
}

void RtfObjectFile::find_marker_lines() {
  ProgressEvent no_progress;
  // An object ends at the next marker line, so nothing after the last marker line is an object.
  std::optional<std::uint32_t> open;
  for_each_pass(reader_, no_progress, [this, &open](const char* p, const char* limit, const char* end) {
    const char* const begin = p;
    const std::uint64_t begin_position = reader_.position();
    const auto add = [&](const char* line) {
      if (const auto number = read_marker_line(line, end)) {
        if (open) index_.add(*open, static_cast<std::uint32_t>(starts_.size() - 1));
        open = number;
        starts_.push_back(begin_position + static_cast<std::uint64_t>(line - begin));
      }
    };
    if (begin_position == 0) add(p);
    // A marker line follows a CR LF. The search looks for that line end and not for the brace, so that both are in the
    // window wherever a block ends.
    const char* const search_end = ahead(limit, kLineEnd.size(), end);
    while ((p = find_pair<'\n', '{'>(p, search_end)) != search_end) {
      ++p;
      if (p - begin >= 2 && p[-2] == '\r') add(p);
    }
    return limit;
  });
}

void RtfObjectFile::go_to(std::uint64_t position) {
  const std::uint64_t here = reader_.position();
  if (position >= here && position - here <= reader_.window().size())
    reader_.consume(static_cast<std::size_t>(position - here));
  else
    reader_.seek(position);
}

bool RtfObjectFile::copy(std::uint64_t number, PendingFile& target) {
  const auto take = [this](std::uint32_t place) {
    next_ = place + 1;
    is_copied_[place] = true;
    return true;
  };
  // The index has no larger number; cut to 32 bits, it could find another object.
  if (number > std::numeric_limits<std::uint32_t>::max()) return false;
  if (!index_.find(static_cast<std::uint32_t>(number), next_, take)) return false;
  const std::uint64_t begin = starts_[next_ - 1] + marker_line_length(number);
  std::uint64_t left = starts_[next_] - begin;
  if (left != 0) left -= kLineEnd.size();
  go_to(begin);
  while (left != 0) {
    if (reader_.window().empty()) {
      ports().desktop->process_messages();
      if (!reader_.more())
        throw failure(FailureNumber::kDeviceError, u"The object file became shorter while it was read");
    }
    const std::string_view bytes =
        reader_.window().substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(left, reader_.window().size())));
    target.write(bytes);
    left -= bytes.size();
    reader_.consume(bytes.size());
  }
  return true;
}

}  // namespace kavo
