#include "common/block_reader.h"

#include <algorithm>
#include <cstring>

#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

thread_local std::size_t forced_block_size = 0;

std::size_t block_size_for(std::uint64_t file_size) {
  if (forced_block_size != 0) return forced_block_size;
  constexpr std::uint64_t unit = BlockReader::kSmallestBlock;
  const std::uint64_t hundredth = (file_size / 100 + unit - 1) / unit * unit;
  return static_cast<std::size_t>(
      std::clamp<std::uint64_t>(hundredth, BlockReader::kSmallestBlock, BlockReader::kLargestBlock));
}

}  // namespace

BlockReader::BlockReader(std::u16string_view path) {
  // A device reports size 0, so it would read as an empty document.
  if (const auto info = ports().files->info(path); info && info->is_special)
    throw failure(FailureNumber::kPathFileAccess,
                  std::u16string(path) + u" is a device or a pipe: write its text to a file first");
  file_ = ports().files->open(path, Access::kRead);
  size_ = file_->size();
  block_ = block_size_for(size_);
}

bool BlockReader::more() {
  if (exhausted()) return false;
  const std::size_t kept = end_ - begin_;
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(block_, size_ - read_));
  if (begin_ != 0 && kept != 0) std::memmove(buffer_.data(), buffer_.data() + begin_, kept);
  begin_ = 0;
  end_ = kept;
  if (buffer_.size() < kept + wanted) buffer_.resize(std::max(kept + wanted, buffer_.size() * 2));
  const std::size_t got = file_->read({buffer_.data() + end_, wanted});
  end_ += got;
  read_ += got;
  if (got < wanted) size_ = read_;  // the file became shorter while it was read
  return got != 0;
}

void BlockReader::seek(std::uint64_t position) {
  position = std::min(position, size_);
  file_->seek(position);
  begin_ = end_ = 0;
  read_ = position;
}

std::int16_t BlockReader::percent() const { return percent_of(read_, size_); }

BlockSizeScope::BlockSizeScope(std::size_t bytes) : saved_(forced_block_size) { forced_block_size = bytes; }
BlockSizeScope::~BlockSizeScope() { forced_block_size = saved_; }

std::int16_t percent_of(std::uint64_t part, std::uint64_t whole) {
  if (part >= whole) return 100;
  // In long double the product cannot overflow, however large the file is.
  const long double exact = 100.0L * static_cast<long double>(part) / static_cast<long double>(whole);
  auto floor = static_cast<std::int16_t>(exact);
  const long double rest = exact - floor;
  if (rest > 0.5L || (rest == 0.5L && floor % 2 != 0)) ++floor;
  return floor;
}

}  // namespace kavo
