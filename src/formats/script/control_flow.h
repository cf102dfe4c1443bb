// Server blocks that decide which part of a page is sent: "If", "Else", "End If", loops, braces.
#pragma once

#include <cstddef>
#include <string_view>

#include "formats/script/page_scripts.h"

namespace kavo::script {

// What a block does to the constructs (conditions, loops) that reach beyond it.
struct Flow {
  std::size_t closes = 0;  // how many that began before the block end in it
  bool parts = false;      // begins another branch of the innermost one that is still open ("Else")
  std::size_t opens = 0;   // how many that begin in the block are open at its end

  // Whether the page behind the block is not the continuation of the page before it.
  bool divides() const { return closes != 0 || parts || opens != 0; }
};

// `text` is that of all blocks. An empty Flow for a value, declarations, a client script, and an unknown language.
Flow flow_of(std::string_view text, const Piece& piece);

}  // namespace kavo::script
