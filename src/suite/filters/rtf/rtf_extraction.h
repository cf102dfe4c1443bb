// Takes an RTF document apart: paragraphs become segments, everything else skeleton.
//
// Text counts in the body, headers, footers, notes, annotations, text boxes, index entries, form fields and the
// document's information. A segment reaches from the first text of a paragraph to the last one, with the codes between
// them. A text inside the line of another text (a footnote, a text box, an index entry) is a nested segment of that
// text.
//
// A segment is named for the bookmark that begins in its paragraph, or for its form field. Its element is the
// destination that it stands in, the cell of a table and the style of its paragraph.
//
// A paragraph is kept until it ends, up to a limit where it is cut. A picture, an object or other data in front of any
// text goes straight into the skeleton. Bytes behind the document's outermost group do not belong to the document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/progress_event.h"
#include "formats/rtf/character_look.h"
#include "formats/rtf/destinations.h"
#include "formats/rtf/font_table.h"
#include "formats/rtf/style_sheet.h"
#include "formats/rtf/token_scanner.h"
#include "formats/text/document_place.h"
#include "suite/filters/filter.h"
#include "suite/filters/rtf/paragraph.h"
#include "suite/languages/language_table.h"

namespace kavo::rtf {

inline constexpr std::size_t kLongestParagraph = 256 * 1024;  // bytes, without data
inline constexpr std::size_t kMostItems = 32'768;             // of a paragraph: texts, control words, braces
inline constexpr std::size_t kLongestData = 4 * 1024 * 1024;  // of pictures and objects in a paragraph with text
inline constexpr std::size_t kLongestTable = 256 * 1024;      // of fonts or colours that can be rewritten
inline constexpr std::size_t kDeepestGroup = 10'000;          // anything deeper is data
inline constexpr std::size_t kMostStories = 64;               // nested stories; anything deeper is data

// Facts from the beginning of a document that hold for all of it.
struct DocumentFormat {
  unsigned code_page = 1252;  // of text in fonts without a character set; may be unsupported
  std::int32_t font = 0;      // of text without one
  std::int32_t language = 0;  // locale identifier, 0 when none is stated
};

struct ExtractionLanguages {
  const LanguageRow* source = nullptr;  // null: unknown
  const LanguageRow* target = nullptr;
};

class RtfExtraction {
 public:
  // All references must outlive the object.
  // Texts in the excluded styles are not offered.
  RtfExtraction(BlockReader& document, const DocumentFormat& format, const ExtractionLanguages& languages,
                std::vector<std::string> excluded_styles, ExtractionSink& sink);
  void run(ProgressEvent& progress);

 private:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  struct Group {
    Destination destination = Destination::kText;
    bool is_new = true;       // nothing has come in it yet
    bool has_star = false;    // it began with \*
    bool may_begin = true;    // a destination: there is no text in it yet
    bool is_silent = false;   // its text is not shown: the instruction of a field
    bool has_result = false;  // of a field
    unsigned fallback = 1;
    std::size_t item = kNowhere;        // of its brace
    std::size_t close_item = kNowhere;  // of a field: where its end begins
    std::size_t story = 0;              // the story that holds both items
    std::size_t generation = 0;         // of that story's paragraph
    std::size_t text_count = 0;         // when it began
    std::size_t code_count = 0;
    std::int32_t style = 0;   // of the paragraph
    bool is_in_cell = false;  // so is this
    const TextCoding* coding = nullptr;
    Look look;
  };
  // A text of its own that is being read; the first one is the document's body.
  struct Story {
    std::size_t group = 0;  // the number of groups with its own
    std::size_t first_item = 0;
    std::size_t generation = 0;  // another number for each paragraph
    std::size_t text_count = 0;  // when its paragraph began
    std::size_t code_count = 0;
    bool is_plain = false;
    bool is_note = false;
    std::string_view type;
    std::string word;        // of the destination: "footnote", "title"; "" for the body
    std::string name;        // of the next segment
    std::int32_t style = 0;  // of the last text
    bool is_in_cell = false;
  };
  enum class Table : std::uint8_t { kNone, kFonts, kColours, kStyles };
  enum class Name : std::uint8_t { kNone, kBookmark, kFormField };

  void take(const Token& token);
  void open_group(const Token& token);
  void close_group(const Token& token);
  void close_field(const Group& closed, const Token& token);
  void take_word(const Token& token);
  bool begin_destination(const Token& token);
  void begin_field(const Token& token);
  void begin_result(const Token& token);
  void begin_story(Destination destination, const Token& token);
  void end_story(const Group& closed, const Token& token);
  void begin_data(std::string_view type, bool is_required, std::string shown, const Token& token);
  void take_data(const Token& token);
  void join_codes();
  void begin_name(std::string_view word);
  void take_name(const Token& token);
  void end_name();
  void identify(Segment& segment, Story& story) const;
  void begin_table(Table table, const Token& token);
  void take_table(const Token& token);
  void take_text(const Token& token);
  std::string_view take_long_text(const Token& token);
  void add_text(const Token& token);
  void pass(std::string_view bytes);
  std::size_t waiting_text_size() const;
  void take_silent_text(const Token& token);
  void take_break(const Token& token);
  bool take_property(const Token& token);

  Group& group() { return groups_.back(); }
  Story& story() { return stories_.back(); }
  bool has_item(const Group& group, std::size_t item) const {
    return item != kNowhere && group.story < stories_.size() && stories_[group.story].generation == group.generation;
  }
  // True when texts or fields are waiting.
  bool is_waiting() const { return text_count_ != 0; }
  void set_font(Group& group);
  bool is_excluded(const Group& group) const;
  void hidden(const Token& token);
  void code(const Token& token, std::string_view type, bool has_look, std::string_view shown);
  Item& add(ItemKind kind, const Token& token);
  bool joins_last(ItemKind kind, std::string_view type) const;
  void collapse(std::size_t item, ItemKind kind, std::string_view type, std::string shown, bool is_required);
  void drop_leading();
  void keep_within_limits(const Token& token);
  void end_paragraph();
  void keep_segments();
  void flush();
  void emit_hidden(std::size_t first, std::size_t last, std::size_t end);
  void emit_core(const Core& core);
  void emit_bytes(std::size_t end);
  void number_nested(Segment& segment) const;
  void before_first_segment();
  void outside(std::string_view bytes);
  void outside_word(const Token& word);

  BlockReader& document_;
  const DocumentFormat& format_;
  const ExtractionLanguages& languages_;
  ExtractionSink& sink_;
  TokenScanner scanner_;
  FontTable fonts_;
  CodingSet codings_;
  SegmentMaker maker_;

  std::vector<Group> groups_;
  std::vector<Story> stories_;
  Paragraph paragraph_;
  std::size_t last_generation_ = 0;
  std::size_t text_count_ = 0;  // of texts and fields that wait
  std::size_t code_count_ = 0;
  bool is_behind_loch_ = false;
  bool is_new_look_ = true;  // the group's look is not the last of the paragraph's
  std::size_t emitted_ = 0;  // how many bytes of the paragraph have been written, while that happens
  std::size_t next_inner_ = 0;

  std::size_t data_depth_ = 0;   // how many braces are open in data; 0 outside data
  bool has_data_brace_ = false;  // the code that holds it has its brace
  bool is_streaming_ = false;    // the data goes directly into the skeleton
  std::size_t data_size_ = 0;    // bytes of data that wait
  Table table_ = Table::kNone;
  std::size_t table_depth_ = 0;
  std::string table_bytes_;
  bool is_long_table_ = false;
  FontTableReader font_reader_{fonts_};
  StyleSheet styles_;
  std::string field_type_;
  Name name_ = Name::kNone;  // that the data are
  std::string name_bytes_;
  std::string form_field_;  // the name of the last one

  bool has_begun_ = false;  // the first group has begun
  bool is_over_ = false;    // the first group has ended
  bool has_colours_ = false;
  bool has_direction_ = false;
  bool has_segment_ = false;  // there was a segment that can have a colour
  DocumentPlace place_;       // of the token
  std::size_t advanced_ = 0;  // how many bytes of the token `place_` has already counted
};

}  // namespace kavo::rtf
