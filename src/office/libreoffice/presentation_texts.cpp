#include "office/libreoffice/presentation_texts.h"

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/drawing/XDrawPage.hpp>
#include <com/sun/star/drawing/XDrawPages.hpp>
#include <com/sun/star/drawing/XDrawPagesSupplier.hpp>
#include <com/sun/star/drawing/XMasterPagesSupplier.hpp>
#include <com/sun/star/office/XAnnotation.hpp>
#include <com/sun/star/office/XAnnotationAccess.hpp>
#include <com/sun/star/office/XAnnotationEnumeration.hpp>
#include <com/sun/star/presentation/XPresentationPage.hpp>

#include "office/libreoffice/rich_text.h"
#include "office/libreoffice/shape_texts.h"
#include "office/libreoffice/uno_text.h"

namespace kavo {
namespace {

using com::sun::star::beans::XPropertySet;
using com::sun::star::container::XIndexAccess;
using com::sun::star::drawing::XDrawPagesSupplier;
using com::sun::star::drawing::XMasterPagesSupplier;
using com::sun::star::office::XAnnotationAccess;
using com::sun::star::presentation::XPresentationPage;
using com::sun::star::text::XText;
using com::sun::star::uno::Any;
using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY;
using com::sun::star::uno::UNO_QUERY_THROW;

// The header and footer of a page are properties of the page.
void visit_property(const Reference<XPropertySet>& page, const char* property_name, const std::string& place,
                    TextVisitor& visitor) {
  const rtl::OUString name = rtl::OUString::createFromAscii(property_name);
  if (!page.is() || !page->getPropertySetInfo()->hasPropertyByName(name)) return;
  rtl::OUString text;
  page->getPropertyValue(name) >>= text;
  if (const auto translation = visit_plain(from_uno(text), place, visitor))
    page->setPropertyValue(name, Any(to_uno(*translation)));
}

// A comment has no formatting. Its text is replaced as a whole: the file would be written with as many characters as it
// had before if a cursor replaced them.
void visit_comments(OfficeDocument& document, const Reference<XAnnotationAccess>& page, const std::string& place,
                    TextVisitor& visitor) {
  if (!page.is()) return;
  const auto comments = page->createAnnotationEnumeration();
  for (int number = 1; comments.is() && comments->hasMoreElements(); ++number) {
    const Reference<XText> text(comments->nextElement()->getTextRange(), UNO_QUERY);
    if (!text.is()) continue;
    document.listener().step();
    const std::string own_place = place + "/comment:" + std::to_string(number);
    if (const auto translation = visit_plain(from_uno(text->getString()), own_place, visitor))
      text->setString(to_uno(*translation));
  }
}

void visit_slide(OfficeDocument& document, const Any& slide, const std::string& place, TextVisitor& visitor) {
  visit_shapes(document, Reference<XIndexAccess>(slide, UNO_QUERY_THROW), ShapeFilter::kAll, place, visitor);
  visit_property(Reference<XPropertySet>(slide, UNO_QUERY), "FooterText", place + "/footer", visitor);
  visit_comments(document, Reference<XAnnotationAccess>(slide, UNO_QUERY), place, visitor);
  const Reference<XPresentationPage> page(slide, UNO_QUERY);
  if (!page.is()) return;
  const auto notes = page->getNotesPage();
  if (!notes.is()) return;
  visit_shapes(document, Reference<XIndexAccess>(notes, UNO_QUERY_THROW), ShapeFilter::kAll, place + "/notes", visitor);
  visit_property(Reference<XPropertySet>(notes, UNO_QUERY), "HeaderText", place + "/notes/header", visitor);
  visit_property(Reference<XPropertySet>(notes, UNO_QUERY), "FooterText", place + "/notes/footer", visitor);
}

}  // namespace

void visit_presentation(OfficeDocument& document, TextVisitor& visitor) {
  document.listener().run([&] {
    const Reference<XDrawPagesSupplier> slides_of(document.model(), UNO_QUERY_THROW);
    const auto slides = slides_of->getDrawPages();
    for (sal_Int32 i = 0; i < slides->getCount(); ++i)
      visit_slide(document, slides->getByIndex(i), "slide:" + std::to_string(i + 1), visitor);
    const Reference<XMasterPagesSupplier> masters_of(document.model(), UNO_QUERY_THROW);
    const auto masters = masters_of->getMasterPages();
    for (sal_Int32 i = 0; i < masters->getCount(); ++i)
      visit_shapes(document, Reference<XIndexAccess>(masters->getByIndex(i), UNO_QUERY_THROW),
                   ShapeFilter::kNoPlaceholders, "master:" + std::to_string(i + 1), visitor);
  });
}

}  // namespace kavo
