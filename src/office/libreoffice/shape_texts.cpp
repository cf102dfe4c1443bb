#include "office/libreoffice/shape_texts.h"

#include <algorithm>
#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XNamed.hpp>
#include <com/sun/star/drawing/XShape.hpp>
#include <com/sun/star/drawing/XShapes.hpp>
#include <com/sun/star/table/XTable.hpp>
#include <com/sun/star/text/XText.hpp>

#include "office/libreoffice/rich_text.h"
#include "office/libreoffice/uno_text.h"

namespace kavo {
namespace {

using com::sun::star::beans::XPropertySet;
using com::sun::star::container::XIndexAccess;
using com::sun::star::container::XNamed;
using com::sun::star::drawing::XShape;
using com::sun::star::drawing::XShapes;
using com::sun::star::table::XTable;
using com::sun::star::text::XText;
using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY;
using com::sun::star::uno::UNO_QUERY_THROW;

bool is_empty_placeholder(const Reference<XPropertySet>& properties) {
  bool is_empty = false;
  if (properties.is() && properties->getPropertySetInfo()->hasPropertyByName("IsEmptyPresentationObject"))
    properties->getPropertyValue("IsEmptyPresentationObject") >>= is_empty;
  return is_empty;
}

void visit_table(OfficeDocument& document, const Reference<XPropertySet>& shape, const std::string& place,
                 TextVisitor& visitor) {
  Reference<XTable> table;
  shape->getPropertyValue("Model") >>= table;
  if (!table.is()) return;
  for (sal_Int32 row = 0; row < table->getRowCount(); ++row)
    for (sal_Int32 column = 0; column < table->getColumnCount(); ++column) {
      const Reference<XText> cell(table->getCellByPosition(column, row), UNO_QUERY);
      if (cell.is())
        visit_text(document, cell, LineBreaks::kInParagraph,
                   place + "/cell:" + column_name(column) + std::to_string(row + 1), visitor);
    }
}

void visit_shape(OfficeDocument& document, const Reference<XShape>& shape, ShapeFilter filter,
                 const std::string& own_place, TextVisitor& visitor) {
  const std::u16string type = from_uno(shape->getShapeType());
  if (const Reference<XNamed> named(shape, UNO_QUERY); named.is())
    if (const std::u16string name = from_uno(named->getName()); !name.empty()) visitor.enter(own_place, name);
  const Reference<XPropertySet> properties(shape, UNO_QUERY);
  if (type == u"com.sun.star.drawing.TableShape") {
    visit_table(document, properties, own_place, visitor);
    return;
  }
  if (filter == ShapeFilter::kNoPlaceholders && type.starts_with(u"com.sun.star.presentation.")) return;
  const Reference<XText> text(shape, UNO_QUERY);
  if (text.is() && !is_empty_placeholder(properties))
    visit_text(document, text, LineBreaks::kInParagraph, own_place, visitor);
}

// The shapes of a group and of the groups in it, numbered in one sequence, because Office's own macros do not see
// groups within groups.
void visit_group(OfficeDocument& document, const Reference<XShapes>& group, ShapeFilter filter,
                 const std::string& own_place, int& count, TextVisitor& visitor) {
  const Reference<XIndexAccess> members(group, UNO_QUERY_THROW);
  for (sal_Int32 i = 0; i < members->getCount(); ++i) {
    const Reference<XShape> member(members->getByIndex(i), UNO_QUERY_THROW);
    if (const Reference<XShapes> inner(member, UNO_QUERY); inner.is())
      visit_group(document, inner, filter, own_place, count, visitor);
    else
      visit_shape(document, member, filter, own_place + "." + std::to_string(++count), visitor);
  }
}

}  // namespace

void visit_shapes(OfficeDocument& document, const Reference<XIndexAccess>& shapes, ShapeFilter filter,
                  const std::string& place, TextVisitor& visitor, const std::vector<Reference<XShape>>& passed_over) {
  int number = 0;
  for (sal_Int32 i = 0; i < shapes->getCount(); ++i) {
    const Reference<XShape> shape(shapes->getByIndex(i), UNO_QUERY_THROW);
    if (std::find(passed_over.begin(), passed_over.end(), shape) != passed_over.end()) continue;
    const std::string own_place = place + "/shape:" + std::to_string(++number);
    int members = 0;
    if (const Reference<XShapes> group(shape, UNO_QUERY); group.is())
      visit_group(document, group, filter, own_place, members, visitor);
    else
      visit_shape(document, shape, filter, own_place, visitor);
  }
}

std::string column_name(std::int32_t column) {
  std::string name;
  for (std::int32_t rest = column + 1; rest > 0; rest = (rest - 1) / 26)
    name.insert(name.begin(), static_cast<char>('A' + (rest - 1) % 26));
  return name;
}

}  // namespace kavo
