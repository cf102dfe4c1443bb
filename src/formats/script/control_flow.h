// Server blocks that decide which part of a page is sent: "If", "Else", "End If", loops, braces.
#pragma once

#include <cstddef>
#include <string_view>

#include "formats/script/page_scripts.h"

namespace kavo::script {

// What a block does to the constructs (conditions, loops) that reach beyond it.
struct Flow {
  std::size_t closes = 0;  // so many that began before it end in it
  bool parts = false;      // the innermost one that is left goes on with another branch
  std::size_t opens = 0;   // so many that begin in it go on behind it

  // Whether the page behind the block is not the continuation of the page before it.
  bool divides() const { return closes != 0 || parts || opens != 0; }
};

// `text` is that of all blocks. Nothing for a value, for declarations, for a client's script, and for a language that
// is not known.
Flow flow_of(std::string_view text, const Piece& piece);

}  // namespace kavo::script
