// What the filter of resource scripts must remember about a text or a computed place until it rebuilds the script.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formats/rc/rc_languages.h"
#include "formats/text/ascii.h"

namespace kavo::rc {

// Kept as the context of a segment.
struct RcTextPlace {
  bool is_wide = false;   // L"..."
  bool is_glued = false;  // a word comes directly before it
  bool begins_with_macro = false;
  bool ends_with_macro = false;
  unsigned code_page = 0;    // of its bytes
  std::uint32_t dialog = 0;  // the number of the dialog of a control that can have an access key, 0 for none
  std::string key;           // its access key when it has exactly one, UTF-8
  std::string tail;          // zero characters at the end of the literal
};

// The character after the only "&" of a text, in the form in which keys are compared. "" when there is no "&" or more
// than one. "&&" is an ampersand.
std::string access_key_of(std::string_view utf8);

std::string to_context(const RcTextPlace& place);
RcTextPlace to_place(std::string_view context);

// The option to replace a script's resources in the target language.
inline constexpr std::string_view kReplaceOption = "overwrite";

// The type of the codes that are printf markers.
inline constexpr std::string_view kMarkerType = "x-printf";
// The type of the codes that are macros between literals.
inline constexpr std::string_view kMacroType = "x-macro";

// Kinds of computed places, in the lower byte; a code page above it.
enum ComputedKind : std::uint32_t {
  kLanguageValues = 1,  // the two values of a LANGUAGE statement
  kCodePageNumber,      // in #pragma code_page(...)
  kNewLanguage,         // an empty place for a LANGUAGE statement
  kNewCodePage,         // an empty place for a #pragma code_page of the translation
  kOldCodePage,         // an empty place for the source's code page, which the translation has replaced
  kRemoved,             // of a resource that the translation replaces
  kFont,                // FONT and its values
  kLiteral,             // a literal that is not a text and not ASCII
  kComment,             // not ASCII
};
constexpr std::uint32_t computed_kind(ComputedKind kind, unsigned code_page) { return kind | code_page << 8; }
constexpr ComputedKind kind_of(std::uint32_t number) { return static_cast<ComputedKind>(number & 0xFF); }
constexpr unsigned code_page_of(std::uint32_t number) { return number >> 8; }

// The font of dialogs in the translation.
struct RcDialogFont {
  std::string face;     // UTF-8; "" for the source's
  std::string size;     // points
  std::string charset;  // a number of the Windows API: 128 is Japanese
};

bool is_ascii(std::string_view bytes);

// True for the bytes of a code that are a macro. Other codes begin with a sign.
constexpr bool is_macro(std::string_view code) { return !code.empty() && (is_letter(code[0]) || code[0] == '_'); }

// What rebuilding must know about the whole script. Kept as the document's facts.
struct RcFacts {
  unsigned target_code_page = 0;  // of translated blocks that are in an ANSI code page
  bool has_cr_lf = false;
  RcDialogFont font;
};
std::string to_data(const RcFacts& facts);
RcFacts to_facts(std::string_view data);

// The language identifier of the Windows API for one of the suite's codes. A language without a region gets its usual
// one, as resource editors write it (FR: French in France). Nothing for a language without a number.
std::optional<LanguageId> resource_language(std::string_view suite_code);
// A sublanguage of 0 stands for the usual one.
LanguageId with_usual_region(LanguageId id);
// "DE", or "language 7, 1" for a language that the suite does not know.
std::string language_text(const std::optional<LanguageId>& id);

}  // namespace kavo::rc
