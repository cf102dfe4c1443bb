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

// What "\n" in a text means: a new paragraph (cells, comments), or a line break within one (presentations, where each
// paragraph is a text of its own).
enum class LineBreaks { kParagraphs, kInParagraph };

// Shows a visitor all of a text: as one text with kParagraphs, otherwise each paragraph (from 1) as a text. Texts of
// only white space are skipped. Throws UNO exceptions and `failure`, and `interruption` when the user interrupts.
void visit_text(OfficeDocument& document, const com::sun::star::uno::Reference<com::sun::star::text::XText>& text,
                LineBreaks line_breaks, std::string_view place, TextVisitor& visitor);

// The text of a translation without formatting.
std::u16string plain_text(const TranslatedText& translation);

// Shows a visitor a text without formatting, unless it is only white space. Returns the text that replaces it, or
// nothing to leave it as it is.
std::optional<std::u16string> visit_plain(std::u16string_view text, std::string_view place, TextVisitor& visitor);

}  // namespace kavo
