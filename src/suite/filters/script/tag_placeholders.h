// Finds the server blocks of a page that are inside a tag, but not in an attribute that people read. Programs read what
// such a block writes. The page beside the script file shows where the blocks are.
#pragma once

#include <cstdint>
#include <optional>
#include <set>

#include "common/block_reader.h"
#include "formats/html/page_input.h"
#include "formats/html/tokens.h"
#include "suite/filters/filter.h"
#include "suite/filters/html/text_attributes.h"

namespace kavo::script {

class TagPlaceholders {
 public:
  // `coding` is the coding of the page's bytes and must outlive the object. Throws `failure` when the page cannot be
  // read.
  TagPlaceholders(const ConversionSettings& settings, const TextCoding& coding);
  // Ask in the order of the numbers. Reads the page only as far as necessary.
  bool holds(std::uint64_t number);

 private:
  struct Page {
    Page(std::u16string_view path, const TextCoding& coding)
        : file(path), input(file, kUtf8CodePage), scanner(input, coding) {}
    BlockReader file;
    html::PageInput input;
    html::TokenScanner scanner;
  };
  void add(const html::PageToken& token);

  std::optional<Page> page_;  // empty when there is no page, or when it has been read to its end
  html::TextAttributes attributes_;
  std::uint64_t reached_ = 0;  // the last number that was found
  std::set<std::uint64_t> in_tags_;
};

}  // namespace kavo::script
