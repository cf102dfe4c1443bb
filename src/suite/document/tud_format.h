// The format of a bilingual document (".tud"): an XLIFF 1.2 document with one unit for each segment.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/xml/xml_reader.h"
#include "suite/document/coded_text.h"
#include "suite/document/segment.h"
#include "suite/document/set_mark.h"
#include "suite/document/translation_status.h"

namespace kavo {

inline constexpr std::string_view kXliffNamespace = "urn:oasis:names:tc:xliff:document:1.2";
inline constexpr std::string_view kToolId = "K19Suite";

// XLIFF's word for a script file whose segments are texts. In earlier versions segments were lines, with code and
// quotes.
inline constexpr std::string_view kScriptDatatype = "x-script";

// The facts in the document's header. Languages are the suite's own codes ("EN-US").
struct TudHeader {
  // File names without folder, in the system's own form. They may hold any bytes; the format escapes what XML lacks.
  std::string original;       // of the source document
  std::string source_format;  // its extension in capitals
  std::string filter;         // tag
  std::string skeleton;       // "" when it is inside the document
  bool has_skeleton_inside = false;
  std::string source_language;
  std::string target_language;
  unsigned source_code_page = 0;
  unsigned target_code_page = 0;
  std::uint64_t checksum = 0;  // of the source document, 0 when it is not stated
  SetMark set;
  std::string datatype;  // XLIFF's word for the format
};

// A file name of the header as the core writes it.
std::u16string core_file_name(std::string_view name);

// A note of a unit.
struct TudNote {
  std::string text;
  std::string attributes;  // ready to be written again, each after a blank
  bool operator==(const TudNote&) const = default;
};
// True when the suite wrote the note when it made the document.
bool is_own_note(const TudNote& note);

// A translation that is offered besides a unit's own.
struct TudAlternative {
  std::optional<std::int16_t> match;  // percent
  std::string source;                 // coded text; "" when it is not stated
  std::string target;
  std::string origin;  // where it comes from, for people
  bool operator==(const TudAlternative&) const = default;
};

// A unit as it was read. Its places are offsets in the file.
struct TudUnit {
  std::string id;
  std::string name;     // of the text in its document, "" for none
  std::string element;  // what contains the text (Segment::element), "" when unknown
  std::string source;   // coded text
  std::string target;
  bool has_target = false;
  bool translate = true;
  bool approved = false;
  std::string state;
  std::string state_qualifier;
  std::optional<std::int16_t> match;  // percent, of the first alternative translation that has one
  std::string extra;                  // our extradata: the place in the source document
  std::vector<TudNote> notes;
  std::vector<TudAlternative> alternatives;

  // The places that rewriting needs.
  struct Inline {
    CodeKind kind = CodeKind::kStandalone;
    std::string id;
    XmlPlace place;  // of a pair's tag, of the whole element when standalone
  };
  std::vector<Inline> inlines;  // of the source text
  XmlPlace whole;
  XmlPlace start_tag;
  XmlPlace source_tag;
  std::uint64_t source_end = 0;  // end of </source>, or of </seg-source> where there is one
  XmlPlace target_start;         // the start tag (all of it when empty)
  XmlPlace target_end;           // the end tag; its length is 0 when the element is empty
  XmlPlace match_tag;            // the start tag with the match; empty when there is none
};

// The unit's translation. For a target that nobody has written yet (missing, or empty and not approved) it is the
// source text.
std::string_view translation_of(const TudUnit& unit);
// True for a state that means "not translated yet".
bool is_new_state(std::string_view state);
// The unit's status by XLIFF's attributes, as tools set them.
TranslationStatus status_of(const TudUnit& unit);

// The attributes of a target for a status.
struct XliffState {
  std::string_view state;
  std::string_view qualifier;  // "" for none
};
XliffState xliff_state_of(TranslationStatus status);

// These append, in UTF-8, the beginning of a new document up to its first unit; an untranslated unit of the document
// that the header describes; the end.
void append_tud_start(std::string& xml, const TudHeader& header);
void append_tud_unit(std::string& xml, std::uint32_t number, const Segment& segment, const TudHeader& header);
void append_tud_end(std::string& xml);

// Receives a document while it is read.
class TudEvents {
 public:
  virtual ~TudEvents() = default;
  // Called before the first unit.
  virtual void header(const TudHeader& header) { static_cast<void>(header); }
  virtual void unit(const TudUnit& unit) { static_cast<void>(unit); }
  // Called before header() with pieces of the text (base 64) of a skeleton inside the document.
  virtual void skeleton_inside(std::string_view base64) { static_cast<void>(base64); }
};

// Reads a document, whatever editor wrote it: any prefixes, order of attributes, coding, added elements, missing
// targets. Throws `failure` 5 with the place for one that is not well-formed, is cut, is not XLIFF, holds several
// files, or contains a name that is not one plain file name (plain_name.h), since every file of a document is in its
// own folder. If `coding` is given, it receives the coding of the document's bytes before the first event.
void read_tud(std::u16string_view path, TudEvents& events, ProgressEvent* progress = nullptr,
              XmlCoding* coding = nullptr);

// The header of a document. Reads the whole document. Throws `failure` as read_tud() does.
TudHeader header_of(std::u16string_view path);
// The same; nothing for a document that read_tud() refuses, because it is damaged or another program's. Throws
// `failure` when the file cannot be read.
std::optional<TudHeader> header_if_bilingual(std::u16string_view path);

}  // namespace kavo
