#include "office/libreoffice/office_document.h"

#include <algorithm>
#include <com/sun/star/container/XNameAccess.hpp>
#include <com/sun/star/document/BrokenPackageRequest.hpp>
#include <com/sun/star/document/MacroExecMode.hpp>
#include <com/sun/star/document/UpdateDocMode.hpp>
#include <com/sun/star/document/XTypeDetection.hpp>
#include <com/sun/star/frame/XLoadable.hpp>
#include <com/sun/star/frame/XStorable.hpp>
#include <com/sun/star/lang/IllegalArgumentException.hpp>
#include <com/sun/star/lang/XMultiComponentFactory.hpp>
#include <com/sun/star/task/DocumentMSPasswordRequest2.hpp>
#include <com/sun/star/task/DocumentPasswordRequest2.hpp>
#include <com/sun/star/task/XInteractionAbort.hpp>
#include <com/sun/star/task/XInteractionHandler.hpp>
#include <com/sun/star/util/XCloseable.hpp>
#include <cppuhelper/implbase1.hxx>
#include <utility>
#include <vector>

#include "office/libreoffice/rtf_frames.h"
#include "office/libreoffice/uno_text.h"
#include "office/time_limit.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

namespace document = com::sun::star::document;
namespace task = com::sun::star::task;
using com::sun::star::beans::PropertyValue;
using com::sun::star::container::XNameAccess;
using com::sun::star::frame::XLoadable;
using com::sun::star::frame::XStorable;
using com::sun::star::uno::Any;
using com::sun::star::uno::Reference;
using com::sun::star::uno::Sequence;
using com::sun::star::uno::UNO_QUERY;
using com::sun::star::uno::UNO_QUERY_THROW;

struct Kind {
  std::u16string_view name;
  std::u16string_view service;  // the component that reads it
  // How LibreOffice's names for the types of this kind begin. Other types, such as plain text in a ".doc", are refused:
  // saved by LibreOffice, they would not be what they were.
  std::vector<std::u16string_view> types;
  std::string_view filter;      // of release 97
  std::string_view xml_filter;  // of the XML format
};

const Kind& kind_of(OfficeKind kind) {
  static const Kind kinds[] = {{u"Word document",
                                u"com.sun.star.text.TextDocument",
                                {u"writer_MS_", u"writer_Rich_Text_Format"},
                                "MS Word 97",
                                "MS Word 2007 XML"},
                               {u"presentation",
                                u"com.sun.star.presentation.PresentationDocument",
                                {u"impress_MS_", u"MS PowerPoint"},
                                "MS PowerPoint 97",
                                "Impress MS PowerPoint 2007 XML"},
                               {u"workbook",
                                u"com.sun.star.sheet.SpreadsheetDocument",
                                {u"calc_MS_", u"Calc MS ", u"MS Excel"},
                                "MS Excel 97",
                                "Calc MS Excel 2007 XML"}};
  return kinds[static_cast<std::size_t>(kind)];
}

// Answers "no" to everything that LibreOffice asks while it opens a document, and remembers what the question says
// about the document. LibreOffice calls it from its own code, which no exception of ours may pass through.
class Refusal final : public cppu::WeakImplHelper1<task::XInteractionHandler> {
 public:
  void SAL_CALL handle(const Reference<task::XInteractionRequest>& request) override {
    const Any asked = request->getRequest();
    task::DocumentPasswordRequest2 password;
    task::DocumentMSPasswordRequest2 office_password;
    task::DocumentPasswordRequest old_password;
    task::DocumentMSPasswordRequest old_office_password;
    document::BrokenPackageRequest broken;
    if ((asked >>= password) || (asked >>= office_password) || (asked >>= old_password) ||
        (asked >>= old_office_password))
      reason_ = u"it is protected with a password";
    else if (asked >>= broken)
      reason_ = u"it is damaged";
    for (const auto& continuation : request->getContinuations())
      if (const Reference<task::XInteractionAbort> abort(continuation, UNO_QUERY); abort.is()) abort->select();
  }
  const std::u16string& reason() const { return reason_; }

 private:
  std::u16string reason_;
};

void add(Sequence<PropertyValue>& description, const PropertyValue& value) {
  description.realloc(description.getLength() + 1);
  description.getArray()[description.getLength() - 1] = value;
}

rtl::OUString preferred_filter(const Reference<document::XTypeDetection>& detection, const rtl::OUString& type) {
  const Reference<XNameAccess> types(detection, UNO_QUERY_THROW);
  Sequence<PropertyValue> properties;
  types->getByName(type) >>= properties;
  rtl::OUString filter;
  for (const PropertyValue& value : properties)
    if (value.Name == "PreferredFilter") value.Value >>= filter;
  return filter;
}

// The name under which a document is written before it takes its own. The process number of our LibreOffice makes the
// name unique.
std::u16string temporary_name(const std::u16string& target, pid_t office) {
  return target + u".kavo-" + to_utf16(std::to_string(office));
}

}  // namespace

OfficeDocument::OfficeDocument(std::shared_ptr<OfficeListener> listener, OfficeKind kind, std::u16string_view path)
    : listener_(std::move(listener)), kind_(kind), path_(ports().files->absolute(path)) {
  if (!ports().files->info(path_))
    throw failure(FailureNumber::kFileNotFound, path_ + u": no such file", u"LibreOffice");
  listener_->begin_document(time_limit_for(path_));
  try {
    listener_->run([&] { load(); });
  } catch (...) {
    listener_->end_document();
    throw;
  }
}

OfficeDocument::~OfficeDocument() {
  try {
    close();
  } catch (const std::exception&) {
    // LibreOffice is gone, and the document with it.
  }
}

void OfficeDocument::load() {
  const Kind& kind = kind_of(kind_);
  const auto refuse = [&](const std::u16string& reason) {
    throw office_failure(u"The " + std::u16string(kind.name) + u" cannot be opened: " + reason);
  };
  const auto services = listener_->context()->getServiceManager();
  const auto create = [&](const rtl::OUString& service) {
    return services->createInstanceWithContext(service, listener_->context());
  };
  const Reference<Refusal> refusal(new Refusal);
  Sequence<PropertyValue> description =
      property_list({property("URL", url_of(path_)),
                     property("InteractionHandler", Reference<task::XInteractionHandler>(refusal.get())),
                     property("MacroExecutionMode", document::MacroExecMode::NEVER_EXECUTE),
                     property("UpdateDocMode", document::UpdateDocMode::NO_UPDATE)});
  const Reference<document::XTypeDetection> detection(create("com.sun.star.document.TypeDetection"), UNO_QUERY_THROW);
  const rtl::OUString type = detection->queryTypeByDescriptor(description, true);
  const std::u16string type_name = from_uno(type);
  if (!refusal->reason().empty()) refuse(refusal->reason());
  if (!std::ranges::any_of(kind.types, [&](std::u16string_view prefix) { return type_name.starts_with(prefix); }))
    refuse(u"it is damaged or of another kind");
  filter_ = type_name.find(u"2007") == std::u16string::npos ? kind.filter : kind.xml_filter;
  add(description, property("FilterName", preferred_filter(detection, type)));
  try {
    if (type_name.starts_with(u"writer_Rich_Text_Format") && fate_of_frames(path_) == FrameFate::kNeedView) {
      add(description, property("Hidden", true));
      model_.set(listener_->desktop()->loadComponentFromURL(url_of(path_), "_blank", 0, description), UNO_QUERY);
      if (!model_.is()) refuse(refusal->reason().empty() ? u"it is damaged or protected" : refusal->reason());
      return;
    }
    // The document is loaded without a frame and a view, which take time and need the dialogs of an installation with a
    // user interface.
    const Reference<XLoadable> loadable(create(to_uno(kind.service)), UNO_QUERY_THROW);
    model_.set(loadable, UNO_QUERY_THROW);
    loadable->load(description);
  } catch (const com::sun::star::lang::DisposedException&) {
    throw;
  } catch (const com::sun::star::uno::Exception&) {
    refuse(refusal->reason().empty() ? u"it is damaged or protected" : refusal->reason());
  }
}

void OfficeDocument::save_as(std::u16string_view path, std::string_view filter) {
  FileSystem& files = *ports().files;
  const std::u16string target = files.absolute(path);
  const std::u16string temporary = temporary_name(target, listener_->process().id());
  try {
    listener_->run([&] {
      const Reference<XStorable> storable(model_, UNO_QUERY_THROW);
      storable->storeToURL(url_of(temporary), property_list({property("FilterName", to_uno(to_utf16(filter)))}));
    });
    files.rename_file(temporary, target);
  } catch (...) {
    if (files.info(temporary)) files.remove_file(temporary);
    throw;
  }
}

void OfficeDocument::save() { save_as(path_, filter_); }

void OfficeDocument::close() {
  if (!model_.is()) return;
  const auto model = std::exchange(model_, {});
  listener_->run([&] {
    const Reference<com::sun::star::util::XCloseable> closeable(model, UNO_QUERY_THROW);
    closeable->close(true);
  });
  listener_->end_document();
}

}  // namespace kavo
