// The walk over all texts of a workbook.
#pragma once

#include "office/excel_options.h"
#include "office/libreoffice/office_document.h"
#include "office/libreoffice/text_visitor.h"

namespace kavo {

// Shows a visitor every text, sheet by sheet: cells in the order of the options, comments, shapes, titles of charts and
// their axes, headers and footers, and last the sheet's name. Numbers and formulas are not texts; formulas are shown
// for information when the options ask for them. The options also say whether hidden sheets, rows and columns are
// included, whether groups of shapes are dissolved first, and after how many successive blank cells the rest of a row
// is left out.
void visit_workbook(OfficeDocument& document, const ExcelOptions& options, TextVisitor& visitor);

}  // namespace kavo
