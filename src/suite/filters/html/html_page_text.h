// Turns the bytes of a text in a page into the text of a segment: references decoded, white space as browsers show it.
#pragma once

#include <string>
#include <string_view>

#include "formats/html/page_input.h"
#include "formats/text/text_coding.h"
#include "suite/document/segment.h"
#include "suite/filters/html/html_text_place.h"
#include "suite/filters/html/placeholder_scripts.h"
#include "suite/filters/text_patterns.h"

namespace kavo::html {

// Bytes of white space at the edges of a text without tags. References that mean white space count, too, outside of
// attributes.
std::size_t leading_space(std::string_view text, bool counts_references = true);
std::size_t trailing_space(std::string_view text);

class PageText {
 public:
  // All must outlive the object. `coding` is the coding of the window's bytes.
  PageText(PageInput& input, const TextCoding& coding, PlaceholderScripts& scripts, const TextPatterns& patterns)
      : input_(input), coding_(coding), scripts_(scripts), patterns_(patterns) {}

  // Adds a text without tags. In preformatted text each line end becomes LF, elsewhere each run of white space a blank.
  // Patterns become codes.
  void add(SegmentBuilder& builder, std::string_view bytes, const TextPlace& place);
  // The same, with server code in it as codes.
  void add_value(SegmentBuilder& builder, std::string_view bytes, const TextPlace& place);
  void add_server_code(SegmentBuilder& builder, std::string_view bytes);
  // The bytes in UTF-8. "?" stands for invalid bytes.
  std::string decoded(std::string_view bytes) const;
  // What a translator sees of a code.
  std::string shown(std::string_view bytes) const;
  // The same for a value, with the scripts in it.
  std::string shown_value(std::string_view bytes) const;

  // True when a letter was added since has_words(false) was last called.
  bool has_words() const { return has_words_; }
  void has_words(bool value) { has_words_ = value; }

  // Whether people see any of the bytes: SegmentBuilder::has_text() would be true after add() or add_value().
  bool is_visible(std::string_view bytes, bool is_attribute) const;
  bool is_visible_value(std::string_view bytes) const;

 private:
  void add_plain(SegmentBuilder& builder, std::string_view bytes, const TextPlace& place);
  void look_for_words(std::string_view bytes);
  void add_reference(SegmentBuilder& builder, std::string_view bytes, const std::string& text);

  PageInput& input_;
  const TextCoding& coding_;
  PlaceholderScripts& scripts_;
  const TextPatterns& patterns_;
  bool has_words_ = false;
};

}  // namespace kavo::html
