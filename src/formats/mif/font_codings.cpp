#include "formats/mif/font_codings.h"

#include <utility>

namespace kavo::mif {

FontCodings::FontCodings(const DocumentCoding& document)
    : follows_fonts_(document.fonts_decide()),
      is_utf8_(document.is_utf8),
      document_code_page_(document.code_page),
      paragraph_(document.code_page),
      current_(document.code_page) {
  of(document_code_page_);
}

const StringCoding& FontCodings::of(unsigned code_page) const {
  std::unique_ptr<const StringCoding>& coding = codings_[code_page];
  if (!coding) coding = std::make_unique<const StringCoding>(code_page, is_utf8_);
  return *coding;
}

FontCodings::Statement FontCodings::statement_of(std::string_view name) {
  constexpr std::pair<std::string_view, Statement> kStatements[] = {
      {"Para", Statement::kParagraph},
      {"TextLine", Statement::kTextLine},
      {"Pgf", Statement::kParagraphFormat},
      {"PgfTag", Statement::kParagraphTag},
      {"PgfFont", Statement::kParagraphFont},
      {"FontCatalog", Statement::kCharacterFormats},
      {"Font", Statement::kFont},
      {"FTag", Statement::kFontTag},
      {"FEncoding", Statement::kFontEncoding},
  };
  for (const auto& [known, statement] : kStatements)
    if (known == name) return statement;
  return Statement::kOther;
}

void FontCodings::follow(const MifToken& token) {
  switch (token.kind) {
    case MifTokenKind::kOpen:
      return open(statement_of(token.name()));
    case MifTokenKind::kString:
      return value(token.value());
    case MifTokenKind::kClose: {
      if (open_.empty()) return;
      const Statement statement = open_.back();
      open_.pop_back();
      return close(statement);
    }
    case MifTokenKind::kRest:
      return;
  }
}

void FontCodings::open(Statement statement) {
  // A new paragraph ends the one before, even one that was never closed.
  if (statement == Statement::kParagraph || statement == Statement::kTextLine) {
    open_.clear();
    paragraph_ = current_ = document_code_page_;
  } else if (statement == Statement::kParagraphFormat) {
    tag_.clear();
    format_ = 0;
  } else if (statement == Statement::kFont || statement == Statement::kParagraphFont) {
    font_ = {};
  }
  open_.push_back(statement);
}

void FontCodings::value(std::string_view value) {
  if (is_inside(Statement::kFontTag)) {
    font_.tag = value;
  } else if (is_inside(Statement::kFontEncoding)) {
    font_.code_page = code_page_of_font(value, document_code_page_);
  } else if (is_inside(Statement::kParagraphTag)) {
    if (open_.size() > 1 && open_[open_.size() - 2] == Statement::kParagraphFormat) {
      tag_ = value;
    } else {
      paragraph_ = current_ = code_page_of(paragraph_formats_, value, document_code_page_);
    }
  }
}

void FontCodings::close(Statement statement) {
  if (statement == Statement::kParagraphFont) {
    format_ = font_.code_page;
  } else if (statement == Statement::kParagraphFormat && format_ != 0) {
    // The tag in a paragraph names its format; elsewhere it names the catalogue entry being read.
    if (is_inside(Statement::kParagraph))
      paragraph_ = current_ = format_;
    else
      paragraph_formats_.insert_or_assign(tag_, format_);
  } else if (statement == Statement::kFont && is_inside(Statement::kCharacterFormats)) {
    if (font_.code_page != 0) character_formats_.insert_or_assign(font_.tag, font_.code_page);
  } else if (statement == Statement::kFont) {
    current_ = font_.code_page != 0 ? font_.code_page : code_page_of(character_formats_, font_.tag, paragraph_);
  }
}

unsigned FontCodings::code_page_of(const CodePages& formats, std::string_view tag, unsigned otherwise) const {
  const auto found = formats.find(tag);
  return found == formats.end() ? otherwise : found->second;
}

}  // namespace kavo::mif
