// What a format filter of the suite implements.
//
// A filter turns a document into segments and a skeleton, and later writes translated segments as its format requires.
// It works on a stream in both directions and never on a whole document. extract() hands every byte of the document to
// the sink, in order: as skeleton bytes, as a computed place or inside a segment. So the sink can give the document
// back byte for byte without the filter's help. In rebuilding, the filter is asked only for what has changed. Both
// directions take linear time. What a filter keeps from block to block is bounded by a named limit.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/messages.h"
#include "common/progress_event.h"
#include "formats/text/text_coding.h"
#include "suite/document/script_settings.h"
#include "suite/document/segment.h"
#include "suite/document/translation_status.h"
#include "suite/filters/filter_options.h"

namespace kavo {

// Takes messages that are not failures. May be empty.
using MessageTaker = std::function<void(const Message&)>;

struct ConversionSettings {
  std::u16string document;         // the document's path, for the facts in its name
  std::u16string author_document;  // the path of the author's own document, for its content; "" when unknown
  std::string source_language;     // as the suite writes it: "EN-US", "FR"
  std::string target_language;
  unsigned source_code_page = kUtf8CodePage;  // what the user says; a document's own declaration has precedence
  unsigned target_code_page = 0;              // what the user says; 0 for nothing
  FilterOptions options;
  MessageTaker tell;
  ScriptSettings scripts;
};

// What a filter has found out about a document. It is kept in the skeleton.
struct DocumentFacts {
  unsigned code_page = kUtf8CodePage;  // of the document's bytes; a number that TextCoding knows
  // True when the rebuilt document stays in that coding whatever code page the target language asks for (a text with a
  // byte order mark, a format with a coding of its own).
  bool keeps_code_page = false;
  std::string data;  // what the filter needs again for rebuilding (the version of the format); any bytes
  // The code page of the translated texts, when the filter decides it and keeps that of the rest. 0 when the two
  // members above decide. Not kept in the skeleton.
  unsigned text_code_page = 0;
  std::string_view datatype = {};  // XLIFF's word for the document, when it differs from the filter's; a literal
};

class ExtractionSink {
 public:
  virtual ~ExtractionSink() = default;
  // Called once, before anything else.
  virtual void begin(const DocumentFacts& facts) = 0;
  // Takes bytes that stay unchanged, of any length and cut anywhere.
  virtual void skeleton(std::string_view bytes) = 0;
  // Takes bytes that the filter may rewrite in rebuilding (Filter::write_computed), such as the declared charset or the
  // language of the page. The filter defines `kind`.
  virtual void computed(std::uint32_t kind, std::string_view original) = 0;
  virtual void segment(const Segment& segment) = 0;
  // Takes a segment whose bytes are inside a code of a later segment. Call it before segment() or nested_segment() of
  // that one, whose `nested` list must hold the returned number.
  virtual std::uint32_t nested_segment(const Segment& segment) = 0;
};

struct RebuildSettings {
  DocumentFacts facts;
  std::string source_language;
  std::string target_language;
  unsigned target_code_page = kUtf8CodePage;  // code page of the rebuilt document; that of the facts when it is kept
  bool highlights = false;                    // highlight() will be called
  SegmentColours colours = {};
  MessageTaker tell;
};

// The place of a segment in the document being rebuilt.
struct Hole {
  struct Code {
    CodeKind kind = CodeKind::kStandalone;
    std::uint32_t id = 0;
    bool required = false;
    std::size_t begin = 0;  // in `original`
    std::size_t end = 0;
  };

  std::uint32_t number = 0;  // of the segment, from 1
  std::int64_t line = 0;
  std::int64_t column = 0;
  std::string context;
  // The document's bytes. When write_segment() gets the hole, translated texts inside codes are already in place, and
  // the codes (not the text) are in the target's code page.
  std::string original;
  std::vector<Code> codes;  // in the order of their references in the source text

  // The code that a reference means, null for one that the segment does not have.
  const Code* find(const CodedPart& reference) const;
  std::string_view bytes_of(const CodedPart& reference) const;  // "" for one that the segment does not have
  // Call it when `codes` has changed.
  void index_codes();

 private:
  // 1-based place in `codes` of each id's first code and of its closing one
  std::array<std::vector<std::uint32_t>, 2> by_id_;
};

// Bytes of the document and what was written for them.
struct WrittenPart {
  std::string_view original;
  std::string_view written;
  const Hole* hole = nullptr;   // of a segment; null for anything else
  bool holds_segments = false;  // codes of the segment hold other segments, whose bytes are included
};

// "segment 12 (line 4, column 7)"
std::u16string place_of(const Hole& hole);

class Filter {
 public:
  virtual ~Filter() = default;

  // Throws `failure` when the document cannot be read or is not in the filter's format. What the sink throws passes
  // through. Reports to `progress` how much of the document has been read.
  virtual void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                       ProgressEvent& progress) = 0;

  // Called before anything is written. An override must call this one first.
  virtual void begin_rebuild(const RebuildSettings& settings);

  // Called once for each segment, in order, before the segment is written or kept, so that the filter can report
  // problems. By default does nothing.
  virtual void check(const Hole& hole, std::string_view translation);
  // True when an unchanged segment must be rewritten, because its bytes are not in the target's code page. By default:
  // when the document's code page changes and the bytes are not ASCII.
  virtual bool is_recoded(const Hole& hole) const;

  // Appends the translation (coded text) of a segment in the document's own form. Not called for an unchanged segment
  // whose code page is unchanged, too: its original bytes are written. By default: write_text() for the runs, a code's
  // own bytes for the code. Throws `failure` 5 with the place when the translation cannot be written.
  virtual void write_segment(const Hole& hole, std::string_view translation, std::string& bytes);
  // Appends one run of text. By default: encodes it, with a failure for a character that the target's code page lacks.
  virtual void write_text(const Hole& hole, std::string_view text, std::string& bytes);
  // Appends the bytes of a segment (rebuilt or original), marked with a colour where the format and the place can show
  // one. By default: unchanged.
  virtual void highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes);
  // Appends a computed place. By default: the original bytes, recoded when the code page changes.
  virtual void write_computed(std::uint32_t kind, std::string_view original, std::string& bytes);
  // Appends bytes of the skeleton and of codes. Called only when the code page changes, with whole characters. By
  // default: encodes them, keeps invalid bytes, and fails for a character that the target's code page lacks.
  virtual void recode(std::string_view original, std::string& bytes);

  // Called with everything that was written, in order, then end_rebuild(), so that the filter can prove the whole
  // document. Both throw `failure` 5 with the place when the document must not be made. By default do nothing.
  virtual void written(const WrittenPart& part);
  virtual void end_rebuild();

 protected:
  const RebuildSettings& settings() const { return settings_; }
  const TextCoding& source_coding() const { return *source_coding_; }
  const TextCoding& target_coding() const { return *target_coding_; }

 private:
  RebuildSettings settings_;
  std::unique_ptr<TextCoding> source_coding_;
  std::unique_ptr<TextCoding> target_coding_;
};

// One filter of the suite.
struct FilterEntry {
  std::u16string_view text;     // the documents that it takes
  std::u16string_view pattern;  // their names
  std::u16string_view tag;      // "K19HTM": the name of the filter in the library, in a TUD document and in a skeleton
  std::string_view datatype;    // XLIFF datatype of its documents
  std::unique_ptr<Filter> (*make)();
  std::u16string_view identifier = {};  // what the library is given as a document's filter; "" for the tag
};

// All filters, one for each tag that the library knows (filter_list.cpp).
std::span<const FilterEntry> all_filters();

// The filter whose tag is contained in `name`, as the library writes it; the case of letters does not matter. Throws
// `failure` 5 when there is none.
const FilterEntry& find_filter(std::u16string_view name);

}  // namespace kavo
