// Formatted text in LibreOffice: read as runs, written from a translation.
#pragma once

#include <com/sun/star/text/XText.hpp>
#include <com/sun/star/text/XTextRange.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "office/libreoffice/office_document.h"
#include "office/libreoffice/text_visitor.h"

namespace kavo {

// What "\n" is in a text: a paragraph of its own (cells, comments) or a line break in one (presentations, where each
// paragraph is a text).
enum class LineBreaks { kParagraphs, kInParagraph };

// Shows a visitor all of a text: as one with kParagraphs, else each paragraph (from 1) as one. White space is passed
// over. UNO exceptions and `failure` come through.
void visit_text(OfficeDocument& document, const com::sun::star::uno::Reference<com::sun::star::text::XText>& text,
                LineBreaks line_breaks, std::string_view place, TextVisitor& visitor);

// The text of a translation without formatting.
std::u16string plain_text(const TranslatedText& translation);

// Shows a visitor a text without formatting, white space being passed over; the text that is to stand in its place, or
// nothing.
std::optional<std::u16string> visit_plain(std::u16string_view text, std::string_view place, TextVisitor& visitor);

}  // namespace kavo
