// Looks ahead in a page: what a repair must know about the bytes after its place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/block_reader.h"
#include "formats/html/scanner.h"

namespace kavo {

// The length of a character reference at the start of `text` that means white space; 0 when none stands there.
std::size_t blank_reference(std::string_view text);

// What follows a place in the page. kBlankEnd and kEnd are the end tags of the body with and without white space.
enum class PageRest : std::uint8_t { kMore, kBlankEnd, kEnd, kNothing };

class PageAhead {
 public:
  // Borrows both. Looking ahead moves the window: views into it end with each call.
  PageAhead(const BlockReader& reader, HtmlScanner& scanner) : reader_(reader), scanner_(scanner) {}

  // True when text follows at `position`, directly or after white space. Searches the next 64 KB.
  bool text_follows(std::uint64_t position);
  // The end of a page is white space, the end tags of body and html and, after these, comments. `is_ended` says that
  // such an end tag came before `position`, `body_end_counts` that one that follows would take effect.
  PageRest rest(std::uint64_t position, bool is_ended, bool body_end_counts);

 private:
  const BlockReader& reader_;
  HtmlScanner& scanner_;
};

}  // namespace kavo
