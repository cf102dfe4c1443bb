// Takes a page apart: paragraphs and attributes become segments, everything else skeleton.
//
// The texts, inline tags and codes of a paragraph are gathered until a tag ends it. Then its segment reaches from the
// first text to the last one, with the codes between them and the partners of those codes; what lies around it (the
// tags of a paragraph that is bold as a whole, an image before the text) goes into the skeleton.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/progress_event.h"
#include "formats/html/elements.h"
#include "formats/html/page_input.h"
#include "formats/html/tokens.h"
#include "formats/text/document_place.h"
#include "suite/document/code_pairs.h"
#include "suite/document/segment.h"
#include "suite/filters/filter.h"
#include "suite/filters/html/html_page_text.h"
#include "suite/filters/html/html_text_place.h"

namespace kavo::html {

// A longer paragraph is cut into several segments: a page without tags must not become one segment that fills the
// memory.
inline constexpr std::size_t kLongestParagraph = 256 * 1024;  // bytes

class PageExtraction {
 public:
  // All must outlive the object; `code_page` is the page's.
  PageExtraction(BlockReader& document, unsigned code_page, ExtractionSink& sink);

  void run(ProgressEvent& progress);

 private:
  enum class ItemKind : std::uint8_t {
    kText,
    kOpen,
    kClose,
    kCode,     // a tag without a partner, a comment
    kContent,  // bytes that people will see something for: server code, text that is not to be translated
    kForeign,  // a picture or a formula in another language of markup
  };
  // A part of a paragraph. Places are those of `paragraph_`.
  struct Item {
    ItemKind kind = ItemKind::kText;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view type;             // of a tag, a literal
    const Element* element = nullptr;  // of a tag
    std::size_t name_size = 0;
    std::size_t partner = kNoPartner;  // of an opening and its closing tag
    std::size_t first_value = 0;       // in `values_`
    std::size_t value_count = 0;
    std::size_t link = 0;         // the address in a tag's bytes
    std::size_t link_end = 0;     // 0 for no link
    bool is_server_code = false;  // or holds some
  };
  // A place in a tag that is translated or computed.
  struct Value {
    std::size_t begin = 0;  // in the tag's bytes
    std::size_t end = 0;
    PlaceKind place = PlaceKind::kDouble;
    unsigned computed = 0;       // its kind, 0 for a text
    std::string_view attribute;  // of a text, a literal
  };
  // Content that is left alone up to the end tag of its element.
  struct Protection {
    bool is_active = false;
    bool is_inline = false;
    bool is_foreign = false;
    std::string name;
    std::size_t depth = 0;  // of elements of that name
  };

  void start_tag(const PageToken& token);
  void end_tag(const PageToken& token);
  void break_tag(const PageToken& token, const Element& element, bool is_start);
  void inline_tag(const PageToken& token, const Element& element, bool is_start);
  void enter_element(const Element& element);
  void protect(const PageToken& token, const Element& element);
  bool ends_protection(const Element& element) const;
  void protected_bytes(std::string_view bytes);

  bool is_left_alone(const PageToken& token) const;
  void find_values(const PageToken& token, const Element& element);
  // The first attribute of the start tag with a name, null for none.
  const AttributeSpan* attribute(const PageToken& token, std::string_view name) const;
  std::string_view attribute_value(const PageToken& token, std::string_view name) const;

  void add_split(ItemKind kind, std::string_view bytes);
  Item& add_item(ItemKind kind, std::string_view bytes);
  void flush();
  void pair_tags();
  bool same_name(const Item& a, const Item& b) const;
  bool find_core(std::size_t& first, std::size_t& last) const;
  void write_segment(std::size_t first, std::size_t last);
  void write_code(const Item& item);
  std::string meaning_of(const Item& item) const;
  void write_outside(const Item& item);
  void write_tag_outside(std::string_view tag, std::size_t first_value, std::size_t value_count);

  std::string_view bytes_of(const Item& item) const {
    return std::string_view(paragraph_).substr(item.begin, item.end - item.begin);
  }
  TextPlace place_of_text(std::string_view bytes) const;
  // Writes bytes into the skeleton.
  void outside(std::string_view bytes);
  void raw_text(std::string_view bytes);
  // Every byte of the page passes here once, in order.
  void advance(std::string_view bytes);

  BlockReader& document_;
  PageInput input_;
  TextCoding coding_;         // of the page
  TextCoding window_coding_;  // of the input's window
  TokenScanner scanner_;
  PageText text_;
  ExtractionSink& sink_;
  SegmentBuilder builder_;
  SegmentBuilder value_builder_;

  std::string paragraph_;
  std::vector<Item> items_;
  std::vector<Value> values_;
  std::vector<std::size_t> open_tags_;
  PlaceKind place_ = PlaceKind::kFlow;
  bool is_in_text_area_ = false;
  std::size_t preformatted_depth_ = 0;
  Protection protection_;

  DocumentPlace position_;
};

}  // namespace kavo::html
