// Gives a scanner the bytes of a page with one byte for each ASCII character, whatever the page's coding.
//
// A page in an ANSI code page or in UTF-8 is read as it is. A page in UTF-16 is read as UTF-8, so that one scanner
// serves all pages. An unpaired surrogate becomes the three bytes of its number, so that every byte of the page can be
// written again.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "common/block_reader.h"

namespace kavo::html {

class PageInput {
 public:
  // The document must outlive the input. Its window must begin with the page.
  PageInput(BlockReader& document, unsigned code_page);
  // Reads bytes in memory, in any coding but UTF-16.
  explicit PageInput(std::string_view bytes) : memory_(bytes) {}

  // The bytes that have been read but not consumed. Valid until the next more() or consume().
  std::string_view window() const;
  void consume(std::size_t count);
  // Appends to the window; false when nothing is left.
  bool more();

  // The page's own bytes for `bytes`, which are at the start of the window. Valid until the next call.
  std::string_view original(std::string_view bytes);
  // How many bytes of the page these are.
  std::size_t original_size(std::string_view bytes) const;
  // After more() has failed: the last byte of a page in UTF-16 with an odd number of bytes.
  std::string_view odd_byte() const { return is_utf16_ ? document_->window() : std::string_view(); }

 private:
  bool decode_units();

  BlockReader* document_ = nullptr;
  std::string_view memory_;
  bool is_utf16_ = false;
  bool is_big_endian_ = false;
  std::string decoded_;
  std::size_t begin_ = 0;  // where the window begins in `decoded_`
  std::string original_;
};

}  // namespace kavo::html
