// A bilingual document in memory: all its segments, to be read and changed by number.
//
// The texts are in one arena with a record of a few bytes each, so that millions of segments take little more memory
// than their texts. Nothing else of the file is kept: saving reads it once more and copies every byte except the places
// that changed.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/progress_event.h"
#include "suite/document/open_tag.h"
#include "suite/document/tud_format.h"

namespace kavo {

// A segment as users of a document see it; the views are valid until the document is closed.
struct BilingualSegment {
  std::uint32_t number = 0;  // the unit's id in our own documents, 0 for an id that is not a number
  std::string_view source;   // coded text
  std::string_view target;
  TranslationStatus status = TranslationStatus::kUntranslated;
  std::int16_t match = 0;  // percent
  std::uint32_t line = 0;  // place in the source document, 0 when unknown
  std::uint32_t column = 0;
  bool is_unchanged() const { return target == source; }
};

// What another document says about a segment besides its text and status.
struct XliffDetails {
  std::string state;  // "" for the state that belongs to the status
  std::string state_qualifier;
  bool approved = false;
  std::vector<TudNote> notes;                  // to be added unless they exist already
  std::vector<TudAlternative> alternatives{};  // to be added
};

class BilingualDocument {
 public:
  // Reads the whole document. Throws `failure` as read_tud() does.
  explicit BilingualDocument(std::u16string_view path, ProgressEvent* progress = nullptr);

  const std::u16string& path() const { return path_; }
  const TudHeader& header() const { return header_; }
  std::size_t size() const { return index_.size(); }
  BilingualSegment segment(std::size_t index) const;  // from 0; throws `failure` 9
  // Throws `failure` 9, or 5 when the target's codes are not those of the source (one may be left out), the target
  // holds a character that XML lacks, or the match is not 0 to 100.
  void set_segment(std::size_t index, std::string_view target, TranslationStatus status, std::int16_t match);
  // What else XLIFF says about the segment. The next save() writes it. Throws `failure` 9.
  void set_details(std::size_t index, XliffDetails details);
  bool is_changed() const { return changed_count_ != 0; }

  // Writes the changes into the file. Throws `failure`; the file is then as it was, and the changes are kept in memory.
  void save();

  // The target's name, made from the source's: page_asp.htm for FR gives page_asp_FR.htm in the document's folder.
  std::u16string target_name() const;
  // Writes an OpenTag file with every segment. Throws `failure` 5 for a document that we did not make.
  void save_open_tag(std::u16string_view path, const std::optional<SegmentColours>& colours = std::nullopt) const;
  struct Skeleton {
    std::u16string path;
    bool keep = true;  // false for a scratch file that was unpacked from the document
  };
  // The skeleton beside the document, or else the one inside it, unpacked beside it. Nothing when there is none. Throws
  // `failure` 5 for one that is damaged or was not made together with this document.
  std::optional<Skeleton> locate_skeleton() const;
  // True when the author's document (for older bilingual documents: the one that was converted) is beside this one and
  // has changed since it was prepared. False when it is not there, or when its checksum is unknown. Throws `failure`
  // when it cannot be read.
  bool is_source_changed() const;

 private:
  friend class DocumentLoader;
  void append(const TudUnit& unit);
  void mark_changed(std::size_t index);
  std::u16string beside(std::string_view name) const;
  void refuse_other_skeleton(const std::u16string& skeleton) const;
  // Stores a record made of these parts. Its place in the arena does not change.
  const char* store(std::string_view head, std::string_view source, std::string_view middle, std::string_view target);

  std::u16string path_;
  TudHeader header_;
  std::deque<const char*> index_;  // of the newest record of each segment
  std::vector<std::unique_ptr<char[]>> chunks_;
  std::size_t chunk_used_ = 0;
  std::size_t chunk_size_ = 0;
  std::vector<bool> changed_;
  std::size_t changed_count_ = 0;
  std::map<std::size_t, XliffDetails> details_;
};

}  // namespace kavo
