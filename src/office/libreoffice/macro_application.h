// "PowerPoint.Application" and "Excel.Application", served by LibreOffice: the members that the conversions between
// documents and XML call, and the macros of the templates, which are part of the engine.
//
// The template documents "kavo.ppt" and "kavo.xls" are therefore never opened: opening them gives an object that can
// only be closed, whether the files are there or not.
#pragma once

#include <memory>

#include "office/libreoffice/office_document.h"
#include "platform/automation.h"

namespace kavo {

// `kind` is not kText.
ObjectRef make_macro_application(std::shared_ptr<OfficeListener> listener, OfficeKind kind);

}  // namespace kavo
