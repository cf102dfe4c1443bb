// The object side file of an RTF document, for reading:
//
//   {\v\mor OBJ 1 }       a marker line; CR LF
//   {\pict ... }          the object, any bytes; CR LF
//   {\v\mor OBJ 2 }       the closing marker line; CR LF
//
// An object reaches to the next marker line. The file is read once to find those lines; after that each object takes
// one seek, or none when objects are asked for in the order of the file. Memory: 17 bytes for each object, which is no
// more than its marker line takes in the file. No object is ever in memory as a whole.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/lookup_index.h"
#include "common/pending_file.h"

namespace kavo {

class RtfObjectFile {
 public:
  // Opens the file and finds its objects; throws `failure`.
  explicit RtfObjectFile(std::u16string_view path);

  std::size_t size() const { return starts_.empty() ? 0 : starts_.size() - 1; }  // objects in the file
  // Copies the object of that number: the next one from where the last copy ended, else the first from the start of
  // the file. False, and nothing is written, when there is none. Throws `failure`.
  bool copy(std::uint64_t number, PendingFile& target);
  // How many objects no copy() has asked for.
  std::size_t never_copied() const { return static_cast<std::size_t>(std::ranges::count(is_copied_, false)); }

 private:
  void find_marker_lines();
  void go_to(std::uint64_t position);

  BlockReader reader_;
  std::vector<std::uint64_t> starts_;                // of the marker lines, in bytes; the last one is the closing one
  LookupIndex<std::uint32_t, std::uint32_t> index_;  // number of an object, its place in `starts_`
  std::uint32_t next_ = 0;
  std::vector<bool> is_copied_;  // by place
};

}  // namespace kavo
