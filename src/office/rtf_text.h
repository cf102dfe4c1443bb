// What both RTF operations share: the texts that they look for, and reading the document in passes.
//
// Documents are read as bytes. RTF's syntax is seven-bit, and no marker or start text can begin inside another one, so
// every byte can be given back without knowing the code page.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "common/block_reader.h"
#include "common/byte_scan.h"
#include "common/progress_event.h"
#include "formats/rtf/object_marker.h"

namespace kavo {

// How many bytes the window has after every place where a token may begin, unless the file ends earlier. The longest
// token is a marker line with the line end before it (28 bytes).
inline constexpr std::size_t kLookAhead = 32;

inline constexpr std::string_view kLineEnd = "\r\n";

using rtf::kMarkerStart;
using rtf::Marker;
using rtf::marker_text;
using rtf::read_marker;

inline bool begins_with(const char* p, const char* end, std::string_view text) {
  return std::string_view(p, static_cast<std::size_t>(end - p)).starts_with(text);
}

// The place `count` bytes after p, but not beyond `end`.
inline const char* ahead(const char* p, std::ptrdiff_t count, const char* end) { return p + std::min(count, end - p); }

// Opens a document at its first byte. Throws `failure`, also when it does not begin as RTF does.
BlockReader open_rtf(std::u16string_view path);

// Reads the file to its end. scan(p, limit, end) gets the bytes not consumed yet, handles every token that begins
// before `limit` and returns where it stopped: at `limit` or after it. In the last call `limit` is `end`. Throws
// `failure`, and `interruption` when the user interrupts.
template <class Scan>
void for_each_pass(BlockReader& reader, ProgressEvent& progress, Scan scan) {
  do {
    reader.more();
    const std::string_view window = reader.window();
    const std::size_t held_back = reader.exhausted() ? 0 : std::min(window.size(), kLookAhead);
    const char* const begin = window.data();
    if (held_back < window.size())
      reader.consume(
          static_cast<std::size_t>(scan(begin, begin + window.size() - held_back, begin + window.size()) - begin));
    progress.report(reader.percent());
  } while (!reader.exhausted());
}

}  // namespace kavo
