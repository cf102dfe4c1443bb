// Follows server code that was not taken out of a page ("<% %>", "<?php ?>"). An HTML parser sees text and tags there,
// but the server sees a program, so nothing may be written.
//
// The bytes are read from the opening on as the server reads them. Only its own closing ends a block, and a tag with a
// block in an attribute value ends where it would end without the block.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

class ServerCode {
 public:
  // True when `text`, which begins with "<", opens server code.
  static bool begins(std::string_view text) noexcept;

  bool active() const { return active_; }
  std::uint64_t position() const { return position_; }  // of the next byte to feed
  // Enters at a "<" outside any tag.
  void enter(std::uint64_t position, bool php);
  // Enters at a "<" inside a tag, in a value that `quote` opened (0 when in none).
  void enter_in_tag(std::uint64_t position, bool php, char quote);
  // Follows the next bytes, while active.
  void feed(std::string_view bytes);

 private:
  bool active_ = false;
  bool in_block_ = false;
  bool in_tag_ = false;
  char closer_ = '%';  // ends the block when ">" follows
  char quote_ = 0;
  char last_ = 0;
  std::uint64_t position_ = 0;
};

}  // namespace kavo
