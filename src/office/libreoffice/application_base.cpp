#include "office/libreoffice/application_base.h"

#include <com/sun/star/configuration/theDefaultProvider.hpp>
#include <com/sun/star/container/XNameAccess.hpp>

#include "office/libreoffice/uno_text.h"

namespace kavo {

std::u16string office_version(OfficeListener& listener) {
  using com::sun::star::container::XNameAccess;
  using com::sun::star::uno::Any;
  using com::sun::star::uno::Reference;
  return listener.run([&] {
    const auto provider = com::sun::star::configuration::theDefaultProvider::get(listener.context());
    com::sun::star::uno::Sequence<Any> arguments(1);
    arguments.getArray()[0] <<= property("nodepath", to_uno(u"/org.openoffice.Setup/Product"));
    const Reference<XNameAccess> product(
        provider->createInstanceWithArguments("com.sun.star.configuration.ConfigurationAccess", arguments),
        com::sun::star::uno::UNO_QUERY_THROW);
    rtl::OUString version;
    product->getByName("ooSetupVersion") >>= version;
    return from_uno(version);
  });
}

std::shared_ptr<OfficeDocument> ApplicationState::open(OfficeKind kind, std::u16string_view path) {
  auto document = std::make_shared<OfficeDocument>(listener, kind, path);
  std::erase_if(documents, [](const auto& known) { return known.expired(); });
  documents.push_back(document);
  return document;
}

void ApplicationState::close_all() {
  for (const auto& known : documents)
    if (const auto document = known.lock()) document->close();
  documents.clear();
}

std::vector<Member> application_members(const std::shared_ptr<ApplicationState>& state) {
  return {
      {u"Visible", MemberKind::kPropertyGet, 0, 0, [state](auto) -> Value { return state->is_visible; }},
      {u"Visible", MemberKind::kPropertyPut, 1, 1,
       [state](std::span<Argument> arguments) -> Value {
         state->is_visible = as_flag(arguments[0].value);
         return Empty{};
       }},
      {u"Version", MemberKind::kPropertyGet, 0, 0, [state](auto) -> Value { return office_version(*state->listener); }},
      // SaveChanges, OriginalFormat and RouteDocument are ignored: quitting never saves. LibreOffice itself goes on,
      // because it serves other applications, too.
      {u"Quit", MemberKind::kMethod, 0, 3, [state](auto) -> Value {
         state->close_all();
         return Empty{};
       }}};
}

}  // namespace kavo
