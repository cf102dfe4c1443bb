// Finds the placeholders of a page, or of the script file that was made with it, in order. Both files hold the same
// placeholders in the same order.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "formats/html/script_marker.h"

namespace kavo::html {

// Longer blocks are not examined.
inline constexpr std::size_t kLongestBlock = 256 * 1024;  // bytes

// The number in a placeholder that begins `marker`, 0 for anything else.
std::uint64_t placeholder_number(std::string_view marker);

class MarkerReader {
 public:
  // In a script file (`is_script_file`) a placeholder must begin a line. Throws `failure` when the file cannot be read.
  MarkerReader(std::u16string_view path, bool is_script_file) : file_(path), is_script_file_(is_script_file) {}
  // The number of the next placeholder, 0 at the end. If `before` is not null, appends the bytes before the placeholder
  // to it, up to little more than kLongestBlock.
  std::uint64_t next(std::string* before = nullptr);
  // The place after the text of the last marker, in bytes from 0.
  std::uint64_t position() const { return file_.position(); }

 private:
  void consume(std::size_t size, std::string* before);

  BlockReader file_;
  bool is_script_file_;
  char last_ = '\n';  // before the window
};

// The block of a script file that is in `before`, as MarkerReader::next() filled it.
std::string_view text_of_block(std::string_view before);

}  // namespace kavo::html
