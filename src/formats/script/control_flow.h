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
  bool goes_on = false;    // PHP goes on behind the end of the block, see php_end.h

  // True when the text after the block does not simply continue the text before it.
  bool divides() const { return closes != 0 || parts || opens != 0; }
};

// `block` holds the piece. A value, declarations, a client script and an unknown language divide nothing.
Flow flow_of(std::string_view block, const Piece& piece);

}  // namespace kavo::script
