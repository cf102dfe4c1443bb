#include "office/libreoffice/chart_texts.h"

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/chart/XAxisXSupplier.hpp>
#include <com/sun/star/chart/XAxisYSupplier.hpp>
#include <com/sun/star/chart/XAxisZSupplier.hpp>
#include <com/sun/star/chart/XChartDocument.hpp>
#include <com/sun/star/chart/XSecondAxisTitleSupplier.hpp>
#include <com/sun/star/container/XIndexAccess.hpp>
#include <com/sun/star/document/XEmbeddedObjectSupplier.hpp>
#include <com/sun/star/table/XTableChartsSupplier.hpp>

#include "office/libreoffice/rich_text.h"
#include "office/libreoffice/uno_text.h"

namespace kavo {
namespace {

namespace chart = com::sun::star::chart;
using com::sun::star::beans::XPropertySet;
using com::sun::star::container::XIndexAccess;

using com::sun::star::uno::Any;
using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY;
using com::sun::star::uno::UNO_QUERY_THROW;

class ChartWalk {
 public:
  ChartWalk(const Reference<chart::XChartDocument>& document, std::string place, TextVisitor& visitor)
      : document_(document), place_(std::move(place)), visitor_(visitor) {}

  void walk() {
    visit(
        Reference<XPropertySet>(document_, UNO_QUERY), "HasMainTitle", [&] { return document_->getTitle(); }, "/title");
    const Reference<XPropertySet> diagram(document_->getDiagram(), UNO_QUERY);
    const Reference<chart::XAxisXSupplier> x(diagram, UNO_QUERY);
    const Reference<chart::XAxisYSupplier> y(diagram, UNO_QUERY);
    const Reference<chart::XAxisZSupplier> z(diagram, UNO_QUERY);
    const Reference<chart::XSecondAxisTitleSupplier> second(diagram, UNO_QUERY);
    if (x.is())
      visit(
          diagram, "HasXAxisTitle", [&] { return x->getXAxisTitle(); }, "/axis:x/title");
    if (y.is())
      visit(
          diagram, "HasYAxisTitle", [&] { return y->getYAxisTitle(); }, "/axis:y/title");
    if (z.is())
      visit(
          diagram, "HasZAxisTitle", [&] { return z->getZAxisTitle(); }, "/axis:z/title");
    if (!second.is()) return;
    visit(
        diagram, "HasSecondaryXAxisTitle", [&] { return second->getSecondXAxisTitle(); }, "/axis:x2/title");
    visit(
        diagram, "HasSecondaryYAxisTitle", [&] { return second->getSecondYAxisTitle(); }, "/axis:y2/title");
  }

 private:
  // Asks for a title only if the chart has it: asking for a missing title would create it.
  template <class Title>
  void visit(const Reference<XPropertySet>& owner, const char* flag, Title&& title_of, const char* place) {
    const rtl::OUString flag_name = rtl::OUString::createFromAscii(flag);
    bool has_title = false;
    if (!owner.is() || !owner->getPropertySetInfo()->hasPropertyByName(flag_name)) return;
    owner->getPropertyValue(flag_name) >>= has_title;
    if (!has_title) return;
    const Reference<XPropertySet> title(title_of(), UNO_QUERY_THROW);
    rtl::OUString text;
    title->getPropertyValue("String") >>= text;
    if (const auto translation = visit_plain(from_uno(text), place_ + place, visitor_))
      title->setPropertyValue("String", Any(to_uno(*translation)));
  }

  Reference<chart::XChartDocument> document_;
  std::string place_;
  TextVisitor& visitor_;
};

}  // namespace

void visit_charts(const Reference<com::sun::star::sheet::XSpreadsheet>& sheet, const std::string& place,
                  TextVisitor& visitor) {
  const Reference<com::sun::star::table::XTableChartsSupplier> supplier(sheet, UNO_QUERY_THROW);
  const Reference<XIndexAccess> charts(supplier->getCharts(), UNO_QUERY_THROW);
  for (sal_Int32 i = 0; i < charts->getCount(); ++i) {
    const Reference<com::sun::star::document::XEmbeddedObjectSupplier> object(charts->getByIndex(i), UNO_QUERY_THROW);
    const Reference<chart::XChartDocument> document(object->getEmbeddedObject(), UNO_QUERY);
    if (document.is()) ChartWalk(document, place + "/chart:" + std::to_string(i + 1), visitor).walk();
  }
}

}  // namespace kavo
