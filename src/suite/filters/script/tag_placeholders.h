// Which server blocks of a page stand in a tag, in no attribute that people read: what they write there is read by
// programs. The page beside the script file says it.
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
  // `coding`, that of the page's bytes, must outlive the object. Throws `failure` when the page cannot be read.
  TagPlaceholders(const ConversionSettings& settings, const TextCoding& coding);
  // To be asked in the order of the numbers; reads the page as far as it must.
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

  std::optional<Page> page_;  // nothing when it is not there, or read to its end
  html::TextAttributes attributes_;
  std::uint64_t reached_ = 0;  // the last number that was seen
  std::set<std::uint64_t> in_tags_;
};

}  // namespace kavo::script
