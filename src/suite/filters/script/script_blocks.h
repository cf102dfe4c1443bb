// The blocks of a script file in succession, without the lines of their placeholders. In a page with a million
// placeholders those lines are most of the file.
//
// What is between the blocks goes into the skeleton unchanged, so the file is read a second time for it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/copy_trail.h"
#include "common/progress_event.h"

namespace kavo::script {

class ScriptBlocks {
 public:
  // Reads `file` from its current place. The file must outlive the object. Reports the first half of the progress.
  // Throws `failure` when the file cannot be read.
  ScriptBlocks(BlockReader& file, ProgressEvent& progress);

  // The text of all blocks, in the bytes of the file. An empty block does not count.
  std::string_view text() const { return text_; }

  // Offsets in text().
  struct Block {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  // Goes from block to block, in order.
  class Walk {
   public:
    explicit Walk(const ScriptBlocks& blocks) : runs_(blocks.trail_) {}
    bool next(Block& block);

   private:
    CopyTrail::Reader runs_;
  };

  // Goes from block to block once and reads what is between them.
  class Gaps {
   public:
    explicit Gaps(ScriptBlocks& blocks);
    // What is between the last block and `block`, which must be the next one of a Walk. Valid until the next call.
    std::string_view before(const Block& block);
    // What is after the last block, piece by piece. Returns "" at the end.
    std::string_view rest();

   private:
    void pass(std::uint64_t size, std::string* bytes);

    BlockReader& file_;
    CopyTrail::Reader runs_;
    std::uint64_t size_ = 0;  // of the last block
    std::size_t given_ = 0;   // how much of the window rest() has returned
    std::string gap_;
  };

 private:
  BlockReader& file_;
  std::uint64_t start_;
  std::string text_;
  CopyTrail trail_;  // from the file to text_
};

}  // namespace kavo::script
