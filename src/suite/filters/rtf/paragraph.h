// A paragraph of an RTF document that is being read: its bytes and their meaning.
//
// A paragraph may contain others, since a footnote or a text box may be in the middle of a line. Their segments are
// made before the line's own segment. They wait here until it is known whether that segment will contain their bytes in
// a code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "formats/rtf/character_look.h"
#include "formats/text/text_coding.h"
#include "suite/document/code_pairs.h"
#include "suite/filters/filter.h"
#include "suite/document/segment.h"

namespace kavo::rtf {

enum class ItemKind : std::uint8_t {
  kHidden,  // formatting, braces, line ends
  kText,
  kCode,   // anything else that has its place in the text
  kOpen,   // a field, up to what it shows
  kClose,  // its end
};

// A part of a paragraph. Its places are offsets in the paragraph's bytes.
struct Item {
  ItemKind kind = ItemKind::kHidden;
  bool is_required = false;  // of a code
  bool is_visible = false;   // a text that is more than blanks
  bool has_look = false;     // a code that shows itself
  unsigned fallback = 1;     // bytes after each \uN, at its beginning
  unsigned last_fallback = 1;  // at the end of a text
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t look = 0;                 // place in Paragraph::looks
  std::size_t partner = kNoPartner;     // of an opening and its closing code
  const TextCoding* coding = nullptr;   // of a text
  std::string_view type;                // of a code, a literal
  std::string shown;                    // of a code
  std::int64_t line = 0;                // of its first byte
  std::int64_t column = 0;
};

// A segment of a story inside the paragraph. Its segment's `nested` holds indexes into Paragraph::inner.
struct InnerSegment {
  Segment segment;
  std::size_t begin = 0;
  std::size_t end = 0;
  std::uint32_t number = 0;  // the sink's, 0 while it waits
  bool is_nested = false;    // in another one of them
};

struct Paragraph {
  std::string bytes;
  std::vector<Item> items;
  std::vector<Look> looks;
  std::vector<InnerSegment> inner;  // one that is nested stands before the one that holds it

  std::string_view bytes_of(const Item& item) const {
    return std::string_view(bytes).substr(item.begin, item.end - item.begin);
  }
  // Puts the inner segments back into the order of their ends.
  void sort_inner();
  void clear();
};

// A range of items that is to become a segment, both included.
struct Core {
  std::size_t first = 0;
  std::size_t last = 0;
};
// Finds the cores in items [first, last). A core reaches from its first text to its last one, with the codes between
// them and the fields that reach into it. A field that begins or ends outside the range separates two cores.
std::vector<Core> find_cores(Paragraph& paragraph, std::size_t first, std::size_t last);

// Makes segments of the items of a paragraph.
class SegmentMaker {
 public:
  // Says whether two font numbers look alike.
  using SameFont = bool (*)(const void* fonts, std::int32_t first, std::int32_t second);
  SegmentMaker(const void* fonts, SameFont same_font) : fonts_(fonts), same_font_(same_font), builder_(utf8_) {}

  // Makes the segment of a core. Null when the core has no text. Valid until the next call. The segment's `nested`
  // holds indexes into `paragraph.inner`; those entries are marked.
  Segment* make(Paragraph& paragraph, const Core& core, bool is_plain);

 private:
  struct Open {
    std::size_t look = 0;
    std::uint32_t id = 0;
    bool is_field = false;
    std::string_view type;
    std::size_t rest = 0;    // of a field: the sizes of `rest_` and `open_groups_` at its beginning
    std::size_t groups = 0;
  };

  void choose_text_look(const Core& core);
  void add_hidden(const Item& item);
  void add_text(const Item& item);
  void add_code(const Item& item);
  void change_look(std::size_t look);
  void close_other_looks(std::size_t look);
  void close_top();
  void add_bytes(const Item& item);
  std::size_t next_text_look(std::size_t item, std::size_t last) const;
  bool look_alike(std::size_t first, std::size_t second) const;
  bool fits_in(std::size_t outer, std::size_t inner) const;
  std::string_view type_of_change(std::size_t from, std::size_t to) const;
  std::string words_for(std::size_t look) const;

  const void* fonts_;
  SameFont same_font_;
  const TextCoding utf8_{kUtf8CodePage};
  SegmentBuilder builder_;
  Segment segment_;

  Paragraph* paragraph_ = nullptr;
  std::size_t first_look_ = 0;
  unsigned fallback_ = 1;  // of the first item
  std::size_t text_look_ = 0;  // the look that does not count as formatting
  std::vector<Open> open_;
  std::uint32_t next_id_ = 1;
  std::size_t next_inner_ = 0;
  std::map<std::uint32_t, std::string> code_words_;
  std::string rest_;
  std::vector<std::size_t> open_groups_;  // where each begins in `rest_`
  bool is_plain_ = false;
};

}  // namespace kavo::rtf
