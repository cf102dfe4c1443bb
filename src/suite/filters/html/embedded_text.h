// Finds the texts of a page that are inside another language: messages in event attributes and "javascript:" addresses,
// the page in a "srcdoc", what PHP writes in blocks that stay in the page.
//
// A value is read as its language sees it: references are decoded, and the place of each character in the tag is kept.
// In rebuilding, the text is escaped for that language, then for the tag.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/html/tokens.h"
#include "formats/text/text_coding.h"
#include "suite/filters/filter.h"
#include "suite/filters/script/script_units.h"

namespace kavo::html {

enum class Embedding : char {
  kEvent = 'e',    // the script of an attribute
  kAddress = 'a',  // the script of an address, where "%" escapes a character
  kPage = 'p',     // a page in an attribute
  kServer = 's',   // PHP, which is not a value and has no references
};

// What rebuilding must know about such a text. It is kept as the context of its segment.
struct EmbeddedPlace {
  Embedding embedding = Embedding::kEvent;
  char quote = 0;           // the attribute's quote, 0 when it has none
  std::string_view script;  // the context of a segment of a script
};
std::string to_context(const EmbeddedPlace& place);
// False for the context of any other text. `place` refers to the bytes of `context`.
bool read_context(std::string_view context, EmbeddedPlace& place);

// A text. The places of its parts count from the start of the tag's bytes.
struct EmbeddedText {
  Embedding embedding = Embedding::kEvent;
  char quote = 0;
  script::Unit unit;
  std::string attribute;  // its name, in small letters; "" for none
};

// A value as its language sees it.
struct EmbeddedValue {
  std::string text;  // UTF-8; server code in it is unchanged
  // For each byte of `text`: where its character begins and ends in the value.
  std::vector<std::uint32_t> begin;
  std::vector<std::uint32_t> end;
  struct ServerCode {
    std::size_t begin = 0;  // in `text`
    std::size_t end = 0;
  };
  std::vector<ServerCode> server_code;
  bool is_valid = true;  // every byte belongs to a character
};
// `has_references` is true for the value of an attribute. `bytes` are in `coding`.
EmbeddedValue read_embedded(std::string_view bytes, bool has_references, const TextCoding& coding);

// Appends `script` as it must be written in the value of an attribute (or in PHP), in UTF-8.
void append_embedded(std::string_view script, const EmbeddedPlace& place, std::string& utf8);

class EmbeddedTexts {
 public:
  // `coding` is the coding of the page's bytes and must outlive the object.
  EmbeddedTexts(const ConversionSettings& settings, const TextCoding& coding)
      : coding_(coding), offer_(settings.scripts.offer), rules_({settings.scripts.texts, settings.scripts.never}) {}

  // The texts in the value of an attribute. Most attributes have none.
  std::vector<EmbeddedText> of_attribute(std::string_view tag, const AttributeSpan& attribute, bool is_basic) const;
  // The texts in a block of PHP. Other server code has none.
  std::vector<EmbeddedText> of_server_code(std::string_view block) const;

  bool opens_doubts() const { return offer_ == ScriptSettings::Offer::kAll; }

 private:
  std::vector<script::Unit> units_of_script(const EmbeddedValue& value, const script::Piece& all) const;
  std::vector<script::Unit> units_of_pieces(std::string_view text, std::span<const script::Piece> pieces) const;
  std::vector<script::Unit> units_of_page(const EmbeddedValue& value) const;
  void add(const EmbeddedValue& value, std::size_t begin, Embedding embedding, char quote,
           std::vector<script::Unit> units, std::vector<EmbeddedText>& texts) const;

  const TextCoding& coding_;
  ScriptSettings::Offer offer_;
  script::DestinationRules rules_;
};

}  // namespace kavo::html
