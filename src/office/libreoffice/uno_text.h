// Converts texts, file names and values for LibreOffice and back.
#pragma once

#include <com/sun/star/beans/PropertyValue.hpp>
#include <com/sun/star/uno/Any.hxx>
#include <com/sun/star/uno/Sequence.hxx>
#include <initializer_list>
#include <rtl/ustring.hxx>
#include <string>
#include <string_view>

namespace kavo {

rtl::OUString to_uno(std::u16string_view text);
std::u16string from_uno(const rtl::OUString& text);

// The file URL of a core path, with the name as it is on the disk and every byte beyond the plain letters escaped.
rtl::OUString url_of(std::u16string_view path);
// The same for a path of the host.
rtl::OUString url_of_host(std::string_view host_path);

template <class Content>
com::sun::star::beans::PropertyValue property(const char* name, const Content& content) {
  com::sun::star::beans::PropertyValue value;
  value.Name = rtl::OUString::createFromAscii(name);
  value.Value <<= content;
  return value;
}

inline com::sun::star::uno::Sequence<com::sun::star::beans::PropertyValue> property_list(
    std::initializer_list<com::sun::star::beans::PropertyValue> properties) {
  return {properties.begin(), static_cast<sal_Int32>(properties.size())};
}

}  // namespace kavo
