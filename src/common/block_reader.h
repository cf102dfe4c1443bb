// Reads a file through a sliding window of bytes. Every converter reads its document this way.
//
// A scanner looks at window(), consumes what it has finished and asks for more(). Bytes that it did not consume (a
// token that the block cut in two) stay before the next block, so a block may end anywhere. A block is about one
// hundredth of the file and a multiple of 4096 bytes, so that progress is reported in single percents without a system
// call for every 4096 bytes of a large file. It needs memory for one block and for what the scanner leaves unconsumed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace kavo {

class BlockReader {
 public:
  static constexpr std::size_t kSmallestBlock = 4096;
  static constexpr std::size_t kLargestBlock = 256 * 1024;

  BlockReader() = default;
  // Opens for reading; throws `failure`. Nothing is read yet.
  explicit BlockReader(std::u16string_view path);

  // The bytes that have been read but not consumed. Valid until the next more(), seek() or consume().
  std::string_view window() const { return {buffer_.data() + begin_, end_ - begin_}; }
  void consume(std::size_t count) { begin_ += count; }
  // Appends the next block to the window; does nothing and returns false when the file is exhausted. Throws `failure`.
  bool more();
  // True when window() reaches to the end of the file.
  bool exhausted() const { return read_ == size_; }
  // Continues at a byte position (0-based), with an empty window.
  void seek(std::uint64_t position);

  std::uint64_t size() const { return size_; }                        // bytes, taken when opened
  std::uint64_t bytes_read() const { return read_; }                  // up to the end of the window
  std::uint64_t position() const { return read_ - (end_ - begin_); }  // of the window's first byte, 0-based
  // Share of the file read so far: 0 to 100, halves to the even number; 100 for an empty file.
  std::int16_t percent() const;

 private:
  std::unique_ptr<File> file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t block_ = kSmallestBlock;
  std::uint64_t size_ = 0;
  std::uint64_t read_ = 0;
};

// As long as it lives, every BlockReader of this thread reads blocks of a given size, so that tests can cut documents
// at any byte.
class BlockSizeScope {
 public:
  explicit BlockSizeScope(std::size_t bytes);
  ~BlockSizeScope();
  BlockSizeScope(const BlockSizeScope&) = delete;
  BlockSizeScope& operator=(const BlockSizeScope&) = delete;

 private:
  std::size_t saved_;
};

// The share of a whole in percent, rounded to the nearest integer, halves to the even one. At most 100, and 100 when
// `whole` is 0.
std::int16_t percent_of(std::uint64_t part, std::uint64_t whole);

}  // namespace kavo
