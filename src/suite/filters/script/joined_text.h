// The text of joined literals as one text, which knows for each character where it is in the script.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "formats/script/expression.h"
#include "formats/script/literal_value.h"

namespace kavo::script {

struct JoinedText {
  // UTF-8, with kOperandMark for each operand and for bytes that are not valid.
  std::string text;
  // For each byte of `text`: where its character begins and ends in the text of all blocks, in bytes.
  std::vector<std::size_t> begin;
  std::vector<std::size_t> end;
  bool is_whole = true;  // every literal in it was closed

  std::size_t size() const { return text.size(); }
};

// Longer joins are data, not text; nobody could translate such a segment either.
inline constexpr std::size_t kLongestJoin = 256 * 1024;  // bytes of script
inline constexpr std::size_t kMostItems = 256;
// No text has more codes than this.
inline constexpr std::size_t kMostCodes = 256;

// `script` is the text of all blocks, in the bytes of `coding`.
JoinedText joined_text(std::span<const Item> items, std::string_view script, Language language,
                       const TextCoding& coding);

}  // namespace kavo::script
