// "Word.Application", served by LibreOffice: the members that the conversion between Word documents and RTF calls.
//
// Its Fields are the embedded objects of a document, but not hyperlinks, page numbers and the like: LibreOffice keeps
// those as part of the text and up to date by itself. One member is not Word's: kLossesMember (clsDOC2RTF.h).
#pragma once

#include <memory>

#include "office/libreoffice/office_document.h"
#include "platform/automation.h"

namespace kavo {

ObjectRef make_word_application(std::shared_ptr<OfficeListener> listener);

}  // namespace kavo
