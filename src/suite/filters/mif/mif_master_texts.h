// Texts that occur on several master pages are offered once and written in every place.
//
// Two texts are the same when their words, their codes and the fonts in front of them are the same. The numbers that
// the layout program gives to its objects (`<Unique 322384>`) may differ; each place keeps its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "suite/document/segment.h"

namespace kavo::mif {

// Used when the document is taken apart.
class MifMasterTexts {
 public:
  struct Entry {
    std::uint32_t number = 0;  // of the noted texts, from 0
    bool is_noted = false;     // the text is new, and comes back under this number
    bool is_again = false;     // it was noted under this number
  };

  // `font` is the font in effect before the text.
  Entry take(const Segment& segment, std::string_view font);

 private:
  std::unordered_map<std::string, std::uint32_t> numbers_;
  std::size_t size_ = 0;  // of the keys, in bytes
};

// Used when the document is rebuilt.
class MifMasterTranslations {
 public:
  // Begins each noted text, in order.
  void begin(std::string_view original);
  // Takes what is written for the last text that began. Not called for a text that keeps its bytes.
  void written(std::string_view bytes) { texts_.back().written = bytes; }
  // Appends the bytes for a place where a text occurs again.
  void append_again(std::uint32_t number, std::string_view original, std::string& bytes) const;

 private:
  struct Text {
    std::string original;
    std::optional<std::string> written;
  };
  std::vector<Text> texts_;
};

}  // namespace kavo::mif
