// The texts of a sheet's charts.
#pragma once

#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <string>

#include "office/libreoffice/text_visitor.h"

namespace kavo {

// Shows a visitor the titles of a sheet's charts ("chart:1/title") and of their axes ("chart:1/axis:x/title"; y, z, x2,
// y2). Names of series and categories are left out because they are in cells. `place` is what comes before "/chart:".
void visit_charts(const com::sun::star::uno::Reference<com::sun::star::sheet::XSpreadsheet>& sheet,
                  const std::string& place, TextVisitor& visitor);

}  // namespace kavo
