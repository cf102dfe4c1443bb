// Finds the coding of each string of a text, where the fonts declare it.
//
// Before version 8.0 a document without MIFEncoding may declare a coding in each font (`<FEncoding ...>`), and one
// paragraph may mix fonts: English text in one, Japanese in the next. A font takes its coding from its own statement,
// or else from the character format that its tag names, or else from its paragraph, which may take it from the
// paragraph's format. The format: the MIF Reference, a public document.
//
// This applies to the strings of lines. Texts without a font (markers, variables, formats, tags) are in the document's
// coding.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formats/mif/document_coding.h"
#include "formats/mif/string_coding.h"
#include "formats/mif/tokens.h"

namespace kavo::mif {

class FontCodings {
 public:
  // Throws `failure` 5 for a document's code page that is not supported.
  explicit FontCodings(const DocumentCoding& document);

  // Takes every token of the document, in order. In a document the catalogues of formats come before the texts.
  void take(const MifToken& token) {
    if (follows_fonts_) follow(token);
  }

  const StringCoding& document() const { return of(document_code_page_); }
  // The coding of a string that follows the tokens taken so far.
  const StringCoding& current() const { return of(current_); }
  unsigned current_code_page() const { return current_; }
  // The coding of strings in a code page. Valid as long as this object. Throws `failure` 5 for a code page that is not
  // supported.
  const StringCoding& of(unsigned code_page) const;

 private:
  enum class Statement : std::uint8_t {
    kOther,
    kParagraph,
    kTextLine,
    kParagraphFormat,
    kParagraphTag,
    kParagraphFont,
    kCharacterFormats,
    kFont,
    kFontTag,
    kFontEncoding,
  };
  struct Font {
    std::string tag;
    unsigned code_page = 0;  // 0 while none is declared
  };
  using CodePages = std::map<std::string, unsigned, std::less<>>;

  static Statement statement_of(std::string_view name);
  void follow(const MifToken& token);
  void open(Statement statement);
  void value(std::string_view value);
  void close(Statement statement);
  bool is_inside(Statement outer) const { return !open_.empty() && open_.back() == outer; }
  unsigned code_page_of(const CodePages& formats, std::string_view tag, unsigned otherwise) const;

  bool follows_fonts_;
  bool is_utf8_;
  unsigned document_code_page_;
  unsigned paragraph_;  // of the paragraph's own font
  unsigned current_;
  std::vector<Statement> open_;
  Font font_;            // the one being read
  std::string tag_;      // tag of the paragraph format being read
  unsigned format_ = 0;  // code page of that format, 0 for none
  CodePages paragraph_formats_;
  CodePages character_formats_;
  mutable std::map<unsigned, std::unique_ptr<const StringCoding>> codings_;
};

}  // namespace kavo::mif
