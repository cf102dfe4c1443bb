// Looks ahead on a page: what a repair must know of the bytes behind its place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/block_reader.h"
#include "formats/html/scanner.h"

namespace kavo {

// The length of a character reference at the start of `text` that means white space; 0 when none stands there.
std::size_t blank_reference(std::string_view text);

// What follows a place of the page. kBlankEnd and kEnd: the end tags of the body, with and without white space.
enum class PageRest : std::uint8_t { kMore, kBlankEnd, kEnd, kNothing };

class PageAhead {
 public:
  // Borrows both. Looking ahead moves the window: views into it end with each call.
  PageAhead(const BlockReader& reader, HtmlScanner& scanner) : reader_(reader), scanner_(scanner) {}

  // Whether text stands at `position`, or behind white space there. Searches the next 64 KB.
  bool text_follows(std::uint64_t position);
  // The end of a page is white space, the end tags of body and html and, behind these, comments. `is_ended`: such an
  // end tag stands before `position`. `body_end_counts`: one that follows takes effect.
  PageRest rest(std::uint64_t position, bool is_ended, bool body_end_counts);

 private:
  const BlockReader& reader_;
  HtmlScanner& scanner_;
};

}  // namespace kavo
