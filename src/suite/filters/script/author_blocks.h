// Where the blocks of a script file stand in the page of their author: the file holds them in the order of the page,
// byte by byte, so that each is found behind the one before it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "common/block_reader.h"
#include "suite/filters/filter.h"

namespace kavo::script {

class AuthorBlocks {
 public:
  // Throws `failure` when the page is there and cannot be read.
  explicit AuthorBlocks(const ConversionSettings& settings);

  // The line in which the next block begins, 0 when it is not found: then nothing is said of the blocks behind it.
  std::int64_t line_of(std::string_view block);

 private:
  void pass(std::size_t size);

  std::optional<BlockReader> page_;
  std::int64_t line_ = 1;
  char last_ = '\0';
};

}  // namespace kavo::script
