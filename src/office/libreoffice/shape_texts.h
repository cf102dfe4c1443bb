// The walk over the texts of drawn shapes, which presentations and workbooks share.
#pragma once

#include <com/sun/star/container/XIndexAccess.hpp>
#include <com/sun/star/drawing/XShape.hpp>
#include <string>
#include <vector>

#include "office/libreoffice/office_document.h"
#include "office/libreoffice/text_visitor.h"

namespace kavo {

enum class ShapeFilter {
  kAll,
  kNoPlaceholders,  // for a master, whose placeholders only prompt the author of a slide
};

// Shows a visitor the texts of a page's shapes, including those in groups ("shape:3.1") and the cells of tables
// ("shape:4/cell:B2"). Shapes in `passed_over` are skipped and not numbered. `place` is what comes before "/shape:".
void visit_shapes(OfficeDocument& document,
                  const com::sun::star::uno::Reference<com::sun::star::container::XIndexAccess>& shapes,
                  ShapeFilter filter, const std::string& place, TextVisitor& visitor,
                  const std::vector<com::sun::star::uno::Reference<com::sun::star::drawing::XShape>>& passed_over = {});

// "A" for 0, "AA" for 26.
std::string column_name(std::int32_t column);

}  // namespace kavo
