// A file of any length that is never stored: byte i is computed. For positions that no test could write out.
#pragma once

#include <algorithm>
#include <cstdint>

#include "support/memory_files.h"

namespace kavo::test {

class SparseFiles : public MemoryFiles {
 public:
  explicit SparseFiles(std::uint64_t size) : size_(size) {}
  // Every 100th byte ends a line.
  static char byte_at(std::uint64_t position) {
    return position % 100 == 99 ? '\n' : static_cast<char>('a' + position % 26);
  }

  std::unique_ptr<File> open(std::u16string_view, Access) override { return std::make_unique<SparseFile>(size_); }
  std::optional<FileInfo> info(std::u16string_view) override { return FileInfo{size_, false, false}; }

 private:
  class SparseFile : public File {
   public:
    explicit SparseFile(std::uint64_t size) : size_(size) {}
    std::size_t read(std::span<char> buffer) override {
      const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), size_ - position_));
      for (std::size_t i = 0; i < count; ++i) buffer[i] = byte_at(position_ + i);
      position_ += count;
      return count;
    }
    void write(std::string_view) override {}
    void seek(std::uint64_t position) override { position_ = position; }
    std::uint64_t size() override { return size_; }
    void close() override {}

   private:
    std::uint64_t size_;
    std::uint64_t position_ = 0;
  };
  std::uint64_t size_;
};

}  // namespace kavo::test
