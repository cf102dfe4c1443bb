// The blocks of a script file, one after the other, without the lines of their placeholders: of a page of a million
// placeholders those are most of the file.
//
// What lies between the blocks goes into the skeleton as it is, so the file is read a second time for it.
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
  // Reads the file from where it stands; it must outlive the object. Throws `failure`. Reports the first half of the
  // progress.
  ScriptBlocks(BlockReader& file, ProgressEvent& progress);

  // Of all blocks, in the bytes of the file. Blocks without a text are none.
  std::string_view text() const { return text_; }

  // Places in text().
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

  // Goes from block to block once, with what lies between them.
  class Gaps {
   public:
    explicit Gaps(ScriptBlocks& blocks);
    // What lies between the last block and this one, which must be the next one of a Walk: valid until the next call.
    std::string_view before(const Block& block);
    // What lies behind the last block, piece by piece; "" at the end.
    std::string_view rest();

   private:
    void pass(std::uint64_t size, std::string* bytes);

    BlockReader& file_;
    CopyTrail::Reader runs_;
    std::uint64_t size_ = 0;  // of the last block
    std::size_t given_ = 0;   // of the window, by rest()
    std::string gap_;
  };

 private:
  BlockReader& file_;
  std::uint64_t start_;
  std::string text_;
  CopyTrail trail_;  // from the file to text_
};

}  // namespace kavo::script
