#include "office/libreoffice/word_application.h"

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XNameAccess.hpp>
#include <com/sun/star/document/XEmbeddedObjectSupplier2.hpp>
#include <com/sun/star/embed/EmbedStates.hpp>
#include <com/sun/star/graphic/XGraphic.hpp>
#include <com/sun/star/lang/XMultiServiceFactory.hpp>
#include <com/sun/star/text/XTextContent.hpp>
#include <com/sun/star/text/XTextEmbeddedObjectsSupplier.hpp>

#include "office/clsDOC2RTF.h"
#include "office/libreoffice/application_base.h"
#include "office/libreoffice/rtf_frames.h"
#include "office/libreoffice/uno_text.h"

namespace kavo {
namespace {

namespace uno = com::sun::star::uno;
using com::sun::star::beans::XPropertySet;
using com::sun::star::container::XNameAccess;
using com::sun::star::document::XEmbeddedObjectSupplier2;
using com::sun::star::text::XTextContent;
using uno::Reference;
using uno::UNO_QUERY;
using uno::UNO_QUERY_THROW;

constexpr std::int32_t kEmbeddedObjectField = 58;
constexpr std::int32_t kDocumentFormat = 0;
constexpr std::int32_t kRtfFormat = 6;

using DocumentRef = std::shared_ptr<OfficeDocument>;

struct WordState : ApplicationState {
  std::u16string losses;  // of the last SaveAs, for people; "" for none
};
using StateRef = std::shared_ptr<WordState>;

Reference<XNameAccess> embedded_objects(const OfficeDocument& document) {
  const Reference<com::sun::star::text::XTextEmbeddedObjectsSupplier> supplier(document.model(), UNO_QUERY_THROW);
  return supplier->getEmbeddedObjects();
}

// True when the object can be activated: its own program is there and can read it.
bool update(const Reference<XTextContent>& object) {
  const Reference<XEmbeddedObjectSupplier2> supplier(object, UNO_QUERY);
  if (!supplier.is()) return false;
  try {
    const auto control = supplier->getExtendedControlOverEmbeddedObject();
    if (!control.is()) return false;
    control->changeState(com::sun::star::embed::EmbedStates::RUNNING);
    control->changeState(com::sun::star::embed::EmbedStates::LOADED);
    return true;
  } catch (const com::sun::star::lang::DisposedException&) {
    throw;
  } catch (const uno::Exception&) {
    return false;
  }
}

// Replaces the object with the picture that it showed last.
void unlink(const OfficeDocument& document, const Reference<XTextContent>& object) {
  const Reference<XEmbeddedObjectSupplier2> supplier(object, UNO_QUERY_THROW);
  const Reference<com::sun::star::graphic::XGraphic> picture = supplier->getReplacementGraphic();
  if (!picture.is()) throw office_failure(u"The embedded object has no picture that could stand for it");
  const Reference<com::sun::star::lang::XMultiServiceFactory> factory(document.model(), UNO_QUERY_THROW);
  const Reference<XTextContent> graphic(factory->createInstance("com.sun.star.text.TextGraphicObject"),
                                        UNO_QUERY_THROW);
  const Reference<XPropertySet> from(object, UNO_QUERY_THROW), to(graphic, UNO_QUERY_THROW);
  to->setPropertyValue("Graphic", uno::Any(picture));
  for (const char* name : {"AnchorType", "Width", "Height", "HoriOrient", "HoriOrientPosition", "HoriOrientRelation",
                           "VertOrient", "VertOrientPosition", "VertOrientRelation"}) {
    const rtl::OUString property = rtl::OUString::createFromAscii(name);
    to->setPropertyValue(property, from->getPropertyValue(property));
  }
  const auto anchor = object->getAnchor();
  const auto text = anchor->getText();
  text->insertTextContent(anchor->getStart(), graphic, false);
  text->removeTextContent(object);
}

class WordField final : public TableObject {
 public:
  WordField(DocumentRef document, Reference<XTextContent> object)
      : TableObject(
            {{u"Type", MemberKind::kPropertyGet, 0, 0, [](auto) -> Value { return kEmbeddedObjectField; }},
             {u"Update", MemberKind::kMethod, 0, 0,
              [document, object](auto) -> Value { return document->listener().run([&] { return update(object); }); }},
             {u"Unlink", MemberKind::kMethod, 0, 0, [document, object](auto) -> Value {
                document->listener().run([&] { unlink(*document, object); });
                return Empty{};
              }}}) {}
};

ObjectRef field_of(const DocumentRef& document, std::int32_t number) {
  return document->listener().run([&]() -> ObjectRef {
    const auto objects = embedded_objects(*document);
    const auto names = objects->getElementNames();
    if (number < 1 || number > names.getLength())
      throw failure(FailureNumber::kSubscriptOutOfRange, u"The document has no such field", u"LibreOffice");
    return std::make_shared<WordField>(document,
                                       Reference<XTextContent>(objects->getByName(names[number - 1]), UNO_QUERY_THROW));
  });
}

class WordFields final : public TableObject {
 public:
  explicit WordFields(DocumentRef document)
      : TableObject({{u"Count", MemberKind::kPropertyGet, 0, 0, [document](auto) -> Value {
                        return document->listener().run([&]() -> std::int32_t {
                          return embedded_objects(*document)->getElementNames().getLength();
                        });
                      }}}) {}
};

void save_as(WordState& state, OfficeDocument& document, std::u16string_view path, std::int32_t format) {
  state.losses.clear();
  if (format == kDocumentFormat) {
    if (fate_of_frames(document.path()) == FrameFate::kLost)
      state.losses =
          u"LibreOffice does not write the texts in frames of a document that has comments, too: they are missing in "
          u"the "
          u"Word document. Convert it with Word, or take the comments out";
    document.save_as(path, "MS Word 97");
  } else if (format == kRtfFormat) {
    document.save_as(path, "Rich Text Format");
  } else {
    throw failure(FailureNumber::kInvalidCall, u"Only the formats 0 (document) and 6 (RTF) can be saved",
                  u"LibreOffice");
  }
}

class WordDocument final : public TableObject {
 public:
  WordDocument(const ObjectRef& application, const StateRef& state, const DocumentRef& document)
      : TableObject(
            {{u"application", MemberKind::kPropertyGet, 0, 0, [application](auto) -> Value { return application; }},
             // Returns all of them, or the one with a number (from 1).
             {u"Fields", MemberKind::kPropertyGet, 0, 1,
              [document](std::span<Argument> arguments) -> Value {
                if (is_omitted(arguments[0].value)) return std::make_shared<WordFields>(document);
                return field_of(document, as_number(arguments[0].value));
              }},
             {u"SaveAs", MemberKind::kMethod, 2, 2,
              [state, document](std::span<Argument> arguments) -> Value {
                save_as(*state, *document, as_text(arguments[0].value), as_number(arguments[1].value));
                return Empty{};
              }},
             // SaveChanges is ignored: callers only ever ask not to save.
             {u"Close", MemberKind::kMethod, 0, 1, [document](auto) -> Value {
                document->close();
                return Empty{};
              }}}) {}
};

class WordDocuments final : public TableObject {
 public:
  WordDocuments(const ObjectRef& application, const StateRef& state)
      // FileName, ConfirmConversions, ReadOnly, AddToRecentFiles. Only the first one matters: SaveAs writes another
      // file.
      : TableObject({{u"Open", MemberKind::kMethod, 1, 4, [application, state](std::span<Argument> arguments) -> Value {
                        return std::make_shared<WordDocument>(
                            application, state, state->open(OfficeKind::kText, as_text(arguments[0].value)));
                      }}}) {}
};

class WordApplication final : public TableObject, public std::enable_shared_from_this<WordApplication> {
 public:
  explicit WordApplication(const StateRef& state)
      : TableObject([&] {
          std::vector<Member> members = application_members(state);
          members.push_back({u"Documents", MemberKind::kPropertyGet, 0, 0, [this, state](auto) -> Value {
                               return std::make_shared<WordDocuments>(shared_from_this(), state);
                             }});
          members.push_back(
              {kLossesMember, MemberKind::kPropertyGet, 0, 0, [state](auto) -> Value { return state->losses; }});
          return members;
        }()) {}
};

}  // namespace

ObjectRef make_word_application(std::shared_ptr<OfficeListener> listener) {
  auto state = std::make_shared<WordState>();
  state->listener = std::move(listener);
  return std::make_shared<WordApplication>(state);
}

}  // namespace kavo
