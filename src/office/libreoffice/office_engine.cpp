#include "office/libreoffice/office_engine.h"

#include <dlfcn.h>
#include <rtl/ustring.h>

#include "office/libreoffice/macro_application.h"
#include "office/libreoffice/office_listener.h"
#include "office/libreoffice/word_application.h"
#include "platform/posix/host.h"

namespace kavo {
namespace {

// There is no lock, because only one thread uses automation, as on Windows.
std::shared_ptr<OfficeListener>& current() {
  static std::shared_ptr<OfficeListener> listener;
  return listener;
}

}  // namespace

std::shared_ptr<OfficeListener> office_listener() {
  if (current() && !current()->is_alive()) current().reset();
  if (!current()) current() = std::make_shared<OfficeListener>(office_program_folder());
  return current();
}

// The folder of one of LibreOffice's libraries that this code is linked with.
std::filesystem::path office_program_folder() {
  Dl_info library;
  if (::dladdr(reinterpret_cast<const void*>(&rtl_uString_acquire), &library) == 0) throw_errno();
  return std::filesystem::canonical(library.dli_fname).parent_path();
}

void register_office_engine() {
  register_factory(u"Word.Application", [] { return make_word_application(office_listener()); });
  register_factory(u"PowerPoint.Application",
                   [] { return make_macro_application(office_listener(), OfficeKind::kPresentation); });
  register_factory(u"Excel.Application",
                   [] { return make_macro_application(office_listener(), OfficeKind::kWorkbook); });
}

void end_office_engine() noexcept { current().reset(); }

}  // namespace kavo
