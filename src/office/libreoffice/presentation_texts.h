// The walk over all texts of a presentation.
#pragma once

#include "office/libreoffice/office_document.h"
#include "office/libreoffice/text_visitor.h"

namespace kavo {

// Shows a visitor every text: of the slides (shapes, groups, tables, footer, notes, comments), then of the masters.
void visit_presentation(OfficeDocument& document, TextVisitor& visitor);

}  // namespace kavo
