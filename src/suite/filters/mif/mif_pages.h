// Finds out on which kind of page each text of a MIF document is.
//
// A document holds its anchored frames and tables first, then its pages with their text frames, then its text flows. A
// flow names the text frame that it begins in; a table or an anchored frame is where a text refers to it by number. So
// the page of a table's text is known only after a first reading (MifPageSurvey); the second one counts the same
// containers of texts as it passes them (MifOutline).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/block_reader.h"
#include "common/progress_event.h"
#include "formats/mif/tokens.h"

namespace kavo::mif {

enum class PageKind : std::uint8_t { kBody, kMaster, kReference, kHidden };

// The kinds of pages that words such as "body" name. Throws `failure` 5 for any other word.
class PageKinds {
 public:
  explicit PageKinds(std::span<const std::string> words);
  bool has(PageKind kind) const { return (bits_ >> static_cast<unsigned>(kind) & 1) != 0; }

 private:
  unsigned bits_ = 0;
};

// For example "reference".
std::string_view name_of(PageKind kind);

// Counts containers of texts: pages, tables, text flows and the outermost frames among the anchored ones.
class MifOutline {
 public:
  enum class Kind : std::uint8_t { kNone, kPage, kTable, kFlow, kFrame };

  void take(const MifToken& token);

  // The number of the container that the last token is in, or that it begins.
  std::uint32_t number() const { return number_; }  // from 1; 0 for none
  Kind kind() const { return kind_; }

 private:
  void begin(Kind kind);

  Kind kind_ = Kind::kNone;
  std::uint32_t number_ = 0;
  bool is_among_frames_ = false;
  std::uint32_t depth_ = 0;  // of statements in a frame
};

class MifPageSurvey {
 public:
  // Reads the document from its current place to the end, and goes back to that place. Reports progress up to 50
  // percent.
  MifPageSurvey(BlockReader& document, ProgressEvent& progress);

  // The kind of page that a container (MifOutline::number) is on. A container without a page, as in a book or a damaged
  // document, counts as part of the body.
  PageKind kind_of(std::uint32_t container) const {
    return container < kinds_.size() ? kinds_[container] : PageKind::kBody;
  }

 private:
  struct Container {
    MifOutline::Kind kind = MifOutline::Kind::kNone;
    PageKind page = PageKind::kBody;  // of a page
    std::uint32_t id = 0;  // of a table or a frame: its number; of a flow: the number of its first text frame
  };
  // Numbers of objects with the containers that they are in, sorted by number.
  using Places = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
  enum class Value : std::uint8_t { kNone, kId, kPageType, kTableId, kFlowFrame, kTableAnchor, kFrameAnchor };

  void take(const MifToken& token);
  void open(std::string_view name);
  void note(std::string_view word);
  void resolve();
  static std::uint32_t container_of(const Places& places, std::uint32_t id);

  MifOutline outline_;
  Value value_ = Value::kNone;  // what is being read
  bool is_text_frame_ = false;  // the next number belongs to a text frame
  std::string word_;
  std::vector<Container> containers_;
  Places text_frames_;
  Places table_anchors_;
  Places frame_anchors_;
  std::vector<PageKind> kinds_;
};

}  // namespace kavo::mif
