// The script side file of a page, from which HTML2ASP takes the blocks back.
//
// A placeholder names its block: the first line that begins with it, searched from the end of the last block, then from
// the start of the file. A page whose placeholders stand in their original order is served by reading on. The first
// placeholder out of order builds an index of the whole file (16 bytes a block), so that no lookup scans. Block texts
// are copied through a window: a block may be larger than memory.
//
// It also knows which blocks were looked up. While they are read in order a count suffices; with the index each block
// takes 8 bytes and a bit.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/lookup_index.h"
#include "formats/text/utf16_mark.h"

namespace kavo {

class ScriptFile {
 public:
  // Opens the file for reading. Throws `failure`, as all operations do.
  explicit ScriptFile(std::u16string_view path) : reader_(path) {}

  // Call it before the first find().
  bool is_utf16() { return starts_as_utf16(reader_); }
  // Goes to the text of the block with this placeholder. False when there is none; the next find() then searches the
  // whole file.
  bool find(std::string_view placeholder);
  // After find(): hands the block's text piece by piece to `sink`, without the line end after it.
  using Sink = std::function<void(std::string_view)>;
  void read_block(const Sink& sink);

  // How often find() found a block that it had found before.
  std::uint64_t repeated() const { return repeated_; }
  // Blocks that find() never found. A line that begins like a placeholder without being one counts as well, since no
  // placeholder matches it.
  struct Unused {
    std::uint64_t count = 0;
    std::uint64_t position = 0;  // of the first one's placeholder in the file, in bytes from 0
    std::string placeholder;     // its line
  };
  // Call it after the last find(). Reads the file to its end.
  Unused unused();
  // After unused(): whether the file ends inside its last block. Every block that protection writes ends with a line
  // end. An editor may drop the last line end of the file, but it leaves the ">" of the script.
  bool ends_inside_block() const { return ends_inside_block_; }

 private:
  // Each starts at the beginning of a line and stops at the beginning of another.
  void pass_to_marker(const Sink& sink);
  bool skip_line_of(std::string_view placeholder);
  void skip_line();
  // Calls each(position) at every line that begins with the marker, from here to the end of the file.
  template <class Each>
  void for_each_marker(Each&& each);
  void build_index();
  void count_use(std::uint64_t position);
  std::string line_at(std::uint64_t position);

  void fill(std::size_t count);
  void go_to(std::uint64_t position);

  BlockReader reader_;                               // stands where the next search starts
  LookupIndex<std::uint64_t, std::uint64_t> index_;  // hash of a placeholder, position of its line
  bool indexed_ = false;
  std::uint64_t in_order_ = 0;         // how many blocks at the start of the file were found before there was an index
  std::vector<std::uint64_t> blocks_;  // with the index: where the placeholders of all blocks are, in order
  std::vector<bool> used_;             // and which of them were found
  std::uint64_t repeated_ = 0;
  bool in_block_ = false;  // the reader stands in a block's text
  bool ends_inside_block_ = false;
};

}  // namespace kavo
