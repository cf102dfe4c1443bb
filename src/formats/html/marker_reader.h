// Finds the placeholders of a page, or of the script file that was made with it, one after the other. Both files hold
// the same placeholders in the same order.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "formats/html/script_marker.h"

namespace kavo::html {

// A longer block is not looked into.
inline constexpr std::size_t kLongestBlock = 256 * 1024;  // bytes

// The number in a placeholder that begins `marker`, 0 for anything else.
std::uint64_t placeholder_number(std::string_view marker);

class MarkerReader {
 public:
  // `is_script_file`: there a placeholder begins a line. Throws `failure`.
  MarkerReader(std::u16string_view path, bool is_script_file) : file_(path), is_script_file_(is_script_file) {}
  // The number of the next one, 0 at the end. What stands before it is appended to `before` up to kLongestBlock and
  // some more, nowhere when that is null.
  std::uint64_t next(std::string* before = nullptr);
  // In bytes from 0: behind the text of the marker that was found last.
  std::uint64_t position() const { return file_.position(); }

 private:
  void consume(std::size_t size, std::string* before);

  BlockReader file_;
  bool is_script_file_;
  char last_ = '\n';  // before the window
};

// A block of a script file, of what MarkerReader::next() put before the next placeholder.
std::string_view text_of_block(std::string_view before);

}  // namespace kavo::html
