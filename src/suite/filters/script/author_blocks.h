// Finds the blocks of a script file in the author's page. The file holds them unchanged and in the order of the page,
// so each is found after the one before it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "common/block_reader.h"
#include "suite/filters/filter.h"

namespace kavo::script {

class AuthorBlocks {
 public:
  // Throws `failure` when the page exists but cannot be read.
  explicit AuthorBlocks(const ConversionSettings& settings);

  // The line in which the next block begins. Returns 0 when it is not found, and for every block after it.
  std::int64_t line_of(std::string_view block);

 private:
  void pass(std::size_t size);

  std::optional<BlockReader> page_;
  std::int64_t line_ = 1;
  char last_ = '\0';
};

}  // namespace kavo::script
