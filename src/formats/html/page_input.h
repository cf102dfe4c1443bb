// The bytes of a page as its scanner sees them: one byte for each ASCII character, whatever the page's coding.
//
// A page in an ANSI code page or in UTF-8 is seen as it is. One in UTF-16 is seen as UTF-8, in which an unpaired
// surrogate keeps the three bytes of its number, so that the way back gives every byte of the page again: one scanner
// serves all pages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "common/block_reader.h"

namespace kavo::html {

class PageInput {
 public:
  // The document must outlive the input. What its window holds is the beginning of the page.
  PageInput(BlockReader& document, unsigned code_page);
  // Bytes in memory, in any coding but UTF-16.
  explicit PageInput(std::string_view bytes) : memory_(bytes) {}

  // The bytes read and not consumed; valid until the next more() or consume().
  std::string_view window() const;
  void consume(std::size_t count);
  // Appends to the window; false when nothing is left.
  bool more();

  // The page's own bytes for bytes of the window; valid until the next call.
  std::string_view original(std::string_view bytes);
  // How many bytes of the page they are.
  std::size_t original_size(std::string_view bytes) const;
  // Once more() has failed: the byte at the end of a page in UTF-16 that is half a unit.
  std::string_view odd_byte() const { return is_utf16_ ? document_->window() : std::string_view(); }

 private:
  bool decode_units();

  BlockReader* document_ = nullptr;
  std::string_view memory_;
  bool is_utf16_ = false;
  bool is_big_endian_ = false;
  std::string decoded_;
  std::size_t begin_ = 0;  // of the window in `decoded_`
  std::string original_;
};

}  // namespace kavo::html
