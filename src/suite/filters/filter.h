// What a format filter of the suite implements.
//
// A filter turns a document into segments and a skeleton, and later writes translated segments in the form that its
// format wants. It sees a stream in both directions and never a whole document: extract() hands every byte of the
// document, in order, to the sink, as skeleton bytes, as a computed place or inside a segment, so that the sink can
// give the document back byte for byte without the filter's help. At rebuilding the filter is asked only for what
// changed. Both directions take linear time; what a filter carries from block to block is bounded by a named limit.
#pragma once

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
#include "suite/filters/filter_options.h"

namespace kavo {

// Takes messages that are not failures. May be empty.
using MessageTaker = std::function<void(const Message&)>;

struct ConversionSettings {
  std::u16string document;         // the document's path, for what its name tells
  std::u16string author_document;  // that of the document that its author has, for what it holds; "" when unknown
  std::string source_language;     // as the suite writes it: "EN-US", "FR"
  std::string target_language;
  unsigned source_code_page = kUtf8CodePage;  // what the user says; a document's own declaration goes before it
  unsigned target_code_page = 0;              // what the user says; 0 for nothing
  FilterOptions options;
  MessageTaker tell;
  ScriptSettings scripts;
};

// What a filter found out about a document. Kept in the skeleton.
struct DocumentFacts {
  unsigned code_page = kUtf8CodePage;  // of the document's bytes; a number that TextCoding knows
  // True when the rebuilt document stays in that coding whatever code page the target language asks for (a text with a
  // byte order mark, a format with a coding of its own).
  bool keeps_code_page = false;
  std::string data;  // whatever the filter wants to know again at rebuilding (the version of the format); any bytes
  // Of the translated texts, where the filter decides that and keeps the code page of the rest; 0 for what the code
  // page and whether it is kept say. Not kept in the skeleton.
  unsigned text_code_page = 0;
  std::string_view datatype = {};  // XLIFF's word for the document where it is not the filter's; a literal
};

class ExtractionSink {
 public:
  virtual ~ExtractionSink() = default;
  // Once, before anything else.
  virtual void begin(const DocumentFacts& facts) = 0;
  // Bytes that stay. Any length, cut anywhere.
  virtual void skeleton(std::string_view bytes) = 0;
  // Bytes that the filter may want to write anew at rebuilding (Filter::write_computed): the declared charset, the
  // language of the page. `kind` is the filter's own.
  virtual void computed(std::uint32_t kind, std::string_view original) = 0;
  virtual void segment(const Segment& segment) = 0;
  // A segment whose bytes lie inside a code of a later segment; call it before that one's segment() or
  // nested_segment(), which must hold the returned number in its `nested` list.
  virtual std::uint32_t nested_segment(const Segment& segment) = 0;
};

struct RebuildSettings {
  DocumentFacts facts;
  std::string source_language;
  std::string target_language;
  unsigned target_code_page = kUtf8CodePage;  // of the rebuilt document; that of the facts when it keeps that
  bool highlights = false;                    // highlight() will be called
  std::uint32_t colours[4] = {};              // 0x00BBGGRR: untranslated, fuzzy, 100 % match, translated
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
  // The document's bytes. In what write_segment() gets, translated texts inside codes are in their places already, and
  // the codes (not the text) are in the target's code page.
  std::string original;
  std::vector<Code> codes;  // in the order of their references in the source text

  // The code that a reference means, null for one that the segment does not have.
  const Code* find(const CodedPart& reference) const;
  std::string_view bytes_of(const CodedPart& reference) const;  // "" for one that the segment does not have
  // To be called when `codes` has changed.
  void index_codes();

 private:
  std::vector<std::uint32_t> by_id_[2];  // 1-based place in `codes` of each id's first code and of its closing one
};

// Bytes of the document and what was written for them.
struct WrittenPart {
  std::string_view original;
  std::string_view written;
  const Hole* hole = nullptr;   // of a segment; null for all else
  bool holds_segments = false;  // in its codes, whose bytes are among both
};

// "segment 12 (line 4, column 7)"
std::u16string place_of(const Hole& hole);

class Filter {
 public:
  virtual ~Filter() = default;

  // Throws `failure` when the document cannot be read or is none of its format; what the sink throws passes through.
  // Percent of the document read goes to `progress`.
  virtual void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                       ProgressEvent& progress) = 0;

  // Before anything is written. An overriding filter calls this one first.
  virtual void begin_rebuild(const RebuildSettings& settings);

  // Each segment once, in order, before it is written or kept: for what is worth a message. Here: nothing.
  virtual void check(const Hole& hole, std::string_view translation);
  // True when an unchanged segment is to be written all the same, because its bytes do not stand in the target's code
  // page. Here: when the document's code page changes and they are not ASCII.
  virtual bool is_recoded(const Hole& hole) const;

  // Appends the translation (coded text) of a segment as it stands in the document. Not called for a segment that is
  // unchanged and whose code page is too: its original bytes are written. Here: write_text() for the runs, the code's
  // own bytes for codes. Throws `failure` 5 that names the place when it cannot be written.
  virtual void write_segment(const Hole& hole, std::string_view translation, std::string& bytes);
  // One run of text. Here: encoded, with a failure for a character that the target's code page lacks.
  virtual void write_text(const Hole& hole, std::string_view text, std::string& bytes);
  // The bytes of a segment (rebuilt or original), marked with a colour where the format and the place can show one.
  // Here: as they are.
  virtual void highlight(const Hole& hole, std::string_view segment, std::uint32_t colour, std::string& bytes);
  // A computed place. Here: the original bytes, recoded when the code page changes.
  virtual void write_computed(std::uint32_t kind, std::string_view original, std::string& bytes);
  // Bytes of the skeleton and of codes; called only when the code page changes, with whole characters. Here: encoded
  // anew, with invalid bytes as they are and a failure for a character that the target's code page lacks.
  virtual void recode(std::string_view original, std::string& bytes);

  // Everything that was written, in order, then end_rebuild(): for a proof of the whole document. Both throw `failure`
  // 5 that names the place when the document must not be made. Here: nothing.
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
  std::u16string_view text;     // what documents it takes
  std::u16string_view pattern;  // their names
  std::u16string_view tag;      // "K19HTM"; what the library knows it by, and what a TUD document and a skeleton name
  std::string_view datatype;    // XLIFF datatype of its documents
  std::unique_ptr<Filter> (*make)();
  std::u16string_view identifier = {};  // what the library gets told of a document's filter; "" for the tag
};

// All filters, one for each tag that the library knows (filter_list.cpp).
std::span<const FilterEntry> all_filters();

// The filter of a name that holds its tag in any case of letters, as the library writes it; throws `failure` 5 when
// there is none.
const FilterEntry& find_filter(std::u16string_view name);

}  // namespace kavo
