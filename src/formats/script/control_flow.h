// Server blocks that decide which part of a page is sent: "If", "Else", "End If", loops, braces.
#pragma once

#include <cstddef>
#include <string_view>

#include "formats/script/page_scripts.h"

namespace kavo::script {

// What a block does to the constructs (conditions, loops) that reach beyond it.
struct Flow {
  std::size_t closes = 0;  // how many constructs that began before the block end in it
  bool parts = false;      // it begins another branch of the innermost open construct ("Else")
  std::size_t opens = 0;   // how many constructs that begin in the block are still open at its end

  // True when the text after the block does not simply continue the text before it.
  bool divides() const { return closes != 0 || parts || opens != 0; }
};

// `text` is the text of all blocks. Returns an empty Flow for a value, for declarations, for a client script, and for a
// script in an unknown language.
Flow flow_of(std::string_view text, const Piece& piece);

}  // namespace kavo::script
