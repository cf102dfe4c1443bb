// The script side file of a page, from which HTML2ASP takes the blocks back.
//
// A block is looked up by its placeholder: the first line that begins with it, from where the last block ended, else
// from the start of the file. Pages whose placeholders stand in their first order are served by reading on; the first
// placeholder that is out of order makes an index of the whole file (16 bytes a block), so that no lookup ever scans.
// Block texts are copied through a window: a block may be larger than memory.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "common/block_reader.h"
#include "common/lookup_index.h"
#include "html/utf16_mark.h"

namespace kavo {

class ScriptFile {
 public:
  // Opens for reading; throws `failure`, as do all operations.
  explicit ScriptFile(std::u16string_view path) : reader_(path) {}

  // Before the first find().
  bool is_utf16() { return starts_as_utf16(reader_); }
  // Goes to the text of the block with this placeholder; false when there is none, and the next search is then one of
  // the whole file.
  bool find(std::string_view placeholder);
  // After find(): hands the block's text piece by piece to `sink`, without the line end behind it.
  using Sink = std::function<void(std::string_view)>;
  void read_block(const Sink& sink);

 private:
  // Each starts at the beginning of a line and ends at that of another.
  void pass_to_marker(const Sink& sink);
  bool skip_line_of(std::string_view placeholder);
  void skip_line();
  void build_index();

  void fill(std::size_t count);
  void go_to(std::uint64_t position);

  BlockReader reader_;                               // stands where the next search starts
  LookupIndex<std::uint64_t, std::uint64_t> index_;  // hash of a placeholder, position of its line
  bool indexed_ = false;
};

}  // namespace kavo
