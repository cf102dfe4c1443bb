// Writes the translation of an RTF text.
//
// Each run of text with a look of its own is in braces, with words that change the look at the beginning of the
// segment. So moved or missing codes cannot unbalance the document. After the text comes whatever the source's
// formatting leaves open (a brace, a property that stays on), so the rest of the document keeps its look.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/filter.h"
#include "suite/filters/rtf/segment_context.h"
#include "suite/filters/rtf/target_fonts.h"

namespace kavo::rtf {

struct WritingSettings {
  bool is_right_to_left = false;  // the target language
};

class SegmentWriter {
 public:
  SegmentWriter(const Hole& hole, TargetFonts& fonts, const WritingSettings& settings, std::string& bytes)
      : hole_(hole),
        context_(SegmentContext::from_bytes(hole.context)),
        fonts_(fonts),
        settings_(settings),
        bytes_(bytes) {}
  void write(std::string_view translation);

 private:
  struct Open {
    std::uint32_t id = 0;
    std::string_view closing;  // of a field: its end in the source
    bool is_field = false;
    std::string words;  // of what stands inside
  };

  void text(std::string_view text);
  void code(const CodedPart& part);
  void open(const Hole::Code& code);
  void close(std::uint32_t id);
  void close_top();
  void verbatim(std::string_view code);
  void look(const std::string& words);
  void before(char first);
  void plain(std::string_view bytes);
  void encode(std::string_view text, const TextCoding* coding, unsigned fallback);
  void append_unicode(char32_t code_point, unsigned fallback);
  const std::string& words_here() const { return open_.empty() ? context_.text_words : open_.back().words; }

  const Hole& hole_;
  SegmentContext context_;
  TargetFonts& fonts_;
  const WritingSettings& settings_;
  std::string& bytes_;
  std::vector<Open> open_;
  std::string group_;          // words of the group that is open, "" when none is
  bool ends_in_word_ = false;  // a letter, digit or blank next would become part of the word
  bool ends_in_byte_ = false;  // a byte next might make another character of it
  bool ends_in_code_ = false;  // a code next might become one with it
};

}  // namespace kavo::rtf
