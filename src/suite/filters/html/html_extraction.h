// Takes a page apart: paragraphs and attributes become segments, everything else skeleton.
//
// The texts, inline tags and codes of a paragraph are gathered until a tag ends it. Then its segment reaches from the
// first text to the last one, with the codes between them and the partners of those codes; what is outside (the tags of
// a paragraph that is bold as a whole, an image before the text) goes into the skeleton.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/line_map.h"
#include "common/progress_event.h"
#include "formats/html/charset.h"
#include "formats/html/elements.h"
#include "formats/html/page_input.h"
#include "formats/html/tokens.h"
#include "formats/text/document_place.h"
#include "suite/document/code_pairs.h"
#include "suite/document/segment.h"
#include "suite/filters/filter.h"
#include "suite/filters/html/element_rules.h"
#include "suite/filters/html/embedded_text.h"
#include "suite/filters/html/html_page_text.h"
#include "suite/filters/html/html_text_place.h"
#include "suite/filters/html/text_attributes.h"
#include "suite/filters/html/text_surroundings.h"

namespace kavo::html {

// A longer paragraph is cut into several segments: a page without tags must not become one segment that fills the
// memory.
inline constexpr std::size_t kLongestParagraph = 256 * 1024;  // bytes

class PageExtraction {
 public:
  // All must outlive the object. `code_page` is the page's code page.
  PageExtraction(BlockReader& document, unsigned code_page, const ConversionSettings& settings, ExtractionSink& sink);

  void run(ProgressEvent& progress);

 private:
  enum class ItemKind : std::uint8_t {
    kText,
    kOpen,
    kClose,
    kCode,     // a tag without a partner, a comment
    kContent,  // bytes that put something on the page: server code, text that is not to be translated
    kForeign,  // a picture or a formula in another language of markup
  };
  // A part of a paragraph. Its places are offsets in `paragraph_`.
  struct Item {
    ItemKind kind = ItemKind::kText;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view type;             // of a tag; points to a literal
    const Element* element = nullptr;  // of a tag
    std::size_t name_size = 0;
    std::size_t partner = kNoPartner;  // of an opening and its closing tag
    std::size_t first_value = 0;       // in `values_`
    std::size_t value_count = 0;
    Span link;                    // the address in a tag's bytes, empty for none
    Span id;                      // the value of "id" in a tag's bytes, empty for none
    bool is_server_code = false;  // it is server code, or contains some
  };
  // A place in a tag that is translated or computed.
  struct Value {
    std::size_t begin = 0;  // in the tag's bytes
    std::size_t end = 0;
    PlaceKind place = PlaceKind::kDouble;
    unsigned computed = 0;                              // its ComputedKind, 0 for a text
    std::string_view attribute;                         // of a text: the attribute's name, "" in a drawing
    std::shared_ptr<const EmbeddedText> embedded = {};  // of a text in a script or a page of its own
  };
  // Content that is left alone up to the end tag of its element.
  struct Protection {
    bool is_active = false;
    bool is_inline = false;
    bool is_foreign = false;
    std::string name;
    std::size_t depth = 0;  // how many elements with that name are open
  };

  void server_code(std::string_view bytes);
  void rest_of_php(const PageToken& token);
  void start_tag(const PageToken& token);
  void end_tag(const PageToken& token);
  void comment(const PageToken& token);
  bool becomes_note(std::string_view comment) const;
  void break_tag(const PageToken& token, const Element& element, bool is_start);
  void inline_tag(const PageToken& token, const Element& element, bool is_start);
  void enter_element(const Element& element);
  void protect(const PageToken& token, const Element& element);
  bool ends_protection(const Element& element) const;
  void protected_bytes(std::string_view bytes);

  StartTag start_tag_of(const PageToken& token, const Element& element) const {
    return {token, element, scanner_.attributes()};
  }
  bool suspends_protection(const StartTag& tag) const;
  void return_to_protection(const PageToken& token);
  void foreign_text(std::string_view bytes);
  void find_values(const StartTag& tag);

  void add_split(ItemKind kind, std::string_view bytes);
  Item& add_item(ItemKind kind, std::string_view bytes);
  // Ends the paragraph. `ends_at` is the element whose end tag does so, or null.
  void flush(const Element* ends_at = nullptr);
  void pair_tags();
  bool same_name(const Item& a, const Item& b) const;
  bool find_core(std::size_t& first, std::size_t& last) const;
  void include_server_code(std::size_t& first, std::size_t& last) const;
  void write_segment(std::size_t first, std::size_t last, std::string_view name);
  std::string name_around(std::size_t first, std::size_t last) const;
  bool has_text(Value& value, std::string_view bytes) const;
  // The segment of an attribute's value, or of a text in a drawing; `tag` is all of it.
  const Segment& segment_of(const Value& value, std::string_view tag);
  std::string element_of_value(std::string_view tag, std::string_view attribute) const;
  const Segment& embedded_segment(const EmbeddedText& text, std::string_view tag);
  void add_embedded(std::vector<EmbeddedText> texts);
  void lock_without_words(SegmentBuilder& builder, std::string_view note);
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
  TextPatterns patterns_;
  TokenScanner scanner_;
  PlaceholderScripts scripts_;
  PageText text_;
  ExtractionSink& sink_;
  SegmentBuilder builder_;
  SegmentBuilder value_builder_;

  std::uint64_t token_scripts_ = 0;  // the number of the first one that stands in the token being read
  std::string paragraph_;
  std::vector<Item> items_;
  std::vector<Value> values_;
  std::vector<std::size_t> open_tags_;
  PlaceKind place_ = PlaceKind::kFlow;
  bool is_in_text_area_ = false;
  std::size_t preformatted_depth_ = 0;
  Protection protection_;
  // The protection around an element that is translated in spite of it, the innermost last.
  struct Suspended {
    Protection protection;
    std::string name;  // the name of the element that is translated
    std::size_t depth = 0;
  };
  std::vector<Suspended> suspended_;
  std::string unended_php_;       // code since the block after whose end PHP continues; "" in page text
  bool in_foreign_text_ = false;  // in an element of a drawing whose text people read

  TextAttributes attributes_;
  EmbeddedTexts embedded_;
  TextSurroundings surroundings_;
  LineMap author_lines_;
  ElementRules elements_;
  std::vector<std::u16string> note_comments_;  // patterns; none for all
  bool opens_codes_;                           // a text that consists of codes and numbers is translated, too

  DocumentPlace position_;
};

}  // namespace kavo::html
