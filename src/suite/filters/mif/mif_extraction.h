// Takes a MIF document apart: paragraphs and text lines become segments, everything else skeleton.
//
// Every `Para` and `TextLine` counts, wherever it is: in text flows of body, master and reference pages, in table cells
// and titles, footnotes and drawings. The strings and named characters of its lines are joined, since lines end where
// the layout program broke them last; other statements among them are the segment's codes. A segment reaches from the
// first text (or variable) to the last one, with the codes between them and the partners of those codes; what is
// outside (the font of a whole paragraph, a marker before the text) goes into the skeleton.
//
// A font that looks like the one before it (with other spacing or another language for hyphenation) belongs to the
// lines, like a line end. Texts of other pages than the wanted kinds are locked; a text of a master page that equals an
// earlier one is a computed place instead of a segment.
//
// A paragraph that was never closed ends where the next one begins, so a broken statement costs only its own paragraph.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/progress_event.h"
#include "formats/mif/font_codings.h"
#include "formats/mif/string_coding.h"
#include "formats/mif/tokens.h"
#include "formats/text/document_place.h"
#include "suite/document/code_pairs.h"
#include "suite/document/segment.h"
#include "suite/filters/filter.h"
#include "suite/filters/mif/mif_master_texts.h"
#include "suite/filters/mif/mif_pages.h"

namespace kavo::mif {

// A longer paragraph is cut into several segments: a document without ends must not become one segment that fills the
// memory.
inline constexpr std::size_t kLongestParagraph = 256 * 1024;  // bytes
// A longer statement in a line goes into the skeleton, for the same reason. A text (kLongestString) fits.
inline constexpr std::size_t kLongestStatement = 256 * 1024;  // bytes

class MifExtraction {
 public:
  // All must outlive the object. Texts of other pages than `wanted` are locked.
  MifExtraction(BlockReader& document, FontCodings& codings, const PageKinds& wanted, ExtractionSink& sink)
      : document_(document),
        codings_(codings),
        coding_(codings.document()),
        wanted_(wanted),
        sink_(sink),
        builder_(coding_.bytes()) {}

  // Reads the document twice, from its current place.
  void run(ProgressEvent& progress);

 private:
  enum class Place : std::uint8_t {
    kOutside,
    kParagraph,           // between its lines
    kParagraphStatement,  // in a statement about it
    kLine,                // in a line of it, or in a text line
    kStatement,           // in a statement of a line
  };
  enum class ItemKind : std::uint8_t {
    kHidden,  // what belongs to the lines and not to the text
    kString,
    kCharacter,
    kOpen,
    kClose,
    kCode,
    kVariable,  // a code in whose place readers see text
  };
  // One row for each statement in a line that the filter knows.
  struct Statement {
    std::string_view name;
    ItemKind kind = ItemKind::kCode;
    std::string_view type;  // of a code, a literal
    bool is_required = false;
  };
  static const Statement kStatements[];
  static const Statement& find_statement(std::string_view name);

  // A part of a paragraph. Its places are offsets in `paragraph_`.
  struct Item {
    ItemKind kind = ItemKind::kHidden;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t value = 0;  // of a string
    std::size_t value_end = 0;
    const Statement* statement = nullptr;  // of a code
    bool sets_font = false;                // a font that is not the paragraph's own
    std::string_view text;                 // of a character
    unsigned code_page_before = 0;         // the code page of strings before the item
    unsigned code_page = 0;                // the code page of the string itself, or of strings after a font
    bool is_visible = false;
    std::size_t partner = kNoPartner;  // of an opening and its closing code
  };
  enum class FontPart : std::uint8_t {
    kNone,     // the lock, which does not concern the text
    kTag,      // the name of a character format
    kSpacing,  // and other things that a reader does not see
    kLook,
  };
  static FontPart find_font_part(std::string_view name);
  // What finish_statement() must know about the statement that is being read.
  struct Reading {
    const Statement* statement = nullptr;
    std::size_t begin = 0;
    unsigned code_page = 0;  // the code page of strings before it
    std::size_t depth = 0;
    std::size_t value = 0;  // its string
    std::size_t value_end = 0;
    std::size_t string_count = 0;
    bool has_more = false;  // it holds more than strings and blanks
    // While a font is read: what its inner statement sets, whether anything is set, and the parts that a reader sees.
    FontPart font_part = FontPart::kNone;
    bool has_font = false;
    std::string look;
    bool is_too_long = false;  // it is too long, so it goes into the skeleton
  };

  void take(const MifToken& token);
  void recover(std::string_view name);
  void take_outside(const MifToken& token);
  void take_in_paragraph(const MifToken& token);
  void take_about_paragraph(const MifToken& token);
  void take_in_line(const MifToken& token);
  void take_in_statement(const MifToken& token);
  void begin_statement(const MifToken& token);
  void finish_statement();
  Item finished_item();
  void finish_font(Item& item);
  void read_font(const MifToken& token);

  void hidden(std::string_view bytes);
  void flush();
  bool find_core(std::size_t& first, std::size_t& last) const;
  void write_segment(std::size_t first, std::size_t last);
  std::string element() const;
  void write_items(std::size_t first, std::size_t last);
  void write_string(const Item& item);
  std::size_t write_value(std::string_view value, const StringCoding& coding);
  void write_run(std::string_view run, const StringCoding& coding);
  std::vector<unsigned> code_pages(std::size_t first, std::size_t last) const;
  void write_code(const Item& item);
  void follow_fonts(std::size_t first, std::size_t last);
  void follow_blanks(std::string_view bytes);
  std::string_view blanks_before(std::size_t place) const;

  std::string_view bytes_of(const Item& item) const {
    return std::string_view(paragraph_).substr(item.begin, item.end - item.begin);
  }
  // Writes bytes into the skeleton.
  void outside(std::string_view bytes);

  BlockReader& document_;
  FontCodings& codings_;
  const StringCoding& coding_;  // the document's
  const PageKinds& wanted_;
  ExtractionSink& sink_;
  SegmentBuilder builder_;
  MifTokenScanner scanner_;
  MifOutline outline_;
  MifMasterTexts master_texts_;

  Place place_ = Place::kOutside;
  bool is_text_line_ = false;
  bool has_colours_ = false;  // the place for the colours of highlighting has been found
  std::string tag_;           // of a side text, decoded
  bool is_side_text_ = false;
  PageKind page_ = PageKind::kBody;
  std::string_view table_part_;
  std::string paragraph_tag_;  // decoded
  std::size_t depth_ = 0;      // in a statement about the paragraph
  bool is_tag_ = false;        // that statement is the tag of a side text
  bool is_paragraph_tag_ = false;
  Reading reading_;
  std::string look_;  // what a reader sees of the font in effect; "" for the paragraph's own font
  std::string paragraph_;
  std::vector<Item> items_;
  bool has_text_ = false;  // one of the items is a visible text
  std::vector<std::size_t> open_codes_;
  std::string blanks_;  // blanks before `paragraph_`
  std::string font_;    // the statement of the font in effect before `paragraph_`; "" for the paragraph's own font

  DocumentPlace position_;
};

}  // namespace kavo::mif
