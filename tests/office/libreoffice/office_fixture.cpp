#include "office/libreoffice/office_fixture.h"

#include <com/sun/star/frame/XLoadable.hpp>
#include <com/sun/star/frame/XStorable.hpp>
#include <com/sun/star/lang/XMultiComponentFactory.hpp>
#include <com/sun/star/util/XCloseable.hpp>
#include <regex>

#include "office/libreoffice/uno_text.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

namespace frame = com::sun::star::frame;
using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY_THROW;

struct Kind {
  const char* service;
  const char* flat_filter;
  const char* office_filter;
};

const Kind& kind_of(OfficeKind kind) {
  static const Kind kinds[] = {
      {"com.sun.star.text.TextDocument", "OpenDocument Text Flat XML", "MS Word 97"},
      {"com.sun.star.presentation.PresentationDocument", "OpenDocument Presentation Flat XML", "MS PowerPoint 97"},
      {"com.sun.star.sheet.SpreadsheetDocument", "OpenDocument Spreadsheet Flat XML", "MS Excel 97"}};
  return kinds[static_cast<std::size_t>(kind)];
}

rtl::OUString ascii(const char* text) { return rtl::OUString::createFromAscii(text); }

char moved(char c) {
  if (c >= 'a' && c <= 'z') return static_cast<char>('a' + (c - 'a' + 13) % 26);
  if (c >= 'A' && c <= 'Z') return static_cast<char>('A' + (c - 'A' + 13) % 26);
  return c;
}

// The places of the segments' contents.
std::vector<std::pair<std::size_t, std::size_t>> contents_of(std::string_view xml) {
  std::vector<std::pair<std::size_t, std::size_t>> places;
  for (std::size_t at = xml.find("<seg "); at != std::string_view::npos; at = xml.find("<seg ", at)) {
    const std::size_t begin = xml.find('>', at) + 1, end = xml.find("</seg>", begin);
    places.emplace_back(begin, end);
    at = end;
  }
  return places;
}

}  // namespace

std::u16string OfficeFixture::make_document(std::u16string_view name, OfficeKind kind, std::string_view flat_xml,
                                            std::string_view password) {
  const std::u16string source = folder.write(u"source.xml", flat_xml), target = folder.path(name);
  const auto listener = office_listener();
  listener->run([&] {
    const Reference<frame::XLoadable> document(listener->context()->getServiceManager()->createInstanceWithContext(
                                                   ascii(kind_of(kind).service), listener->context()),
                                               UNO_QUERY_THROW);
    document->load(
        property_list({property("URL", url_of(source)), property("FilterName", ascii(kind_of(kind).flat_filter))}));
    const Reference<frame::XStorable> storable(document, UNO_QUERY_THROW);
    storable->storeToURL(url_of(target), property_list({property("FilterName", ascii(kind_of(kind).office_filter)),
                                                        property("Password", to_uno(to_utf16(password)))}));
    Reference<com::sun::star::util::XCloseable>(document, UNO_QUERY_THROW)->close(true);
  });
  return target;
}

std::string OfficeFixture::flat_xml_of(std::u16string_view path, OfficeKind kind, Pictures pictures) {
  OfficeDocument(office_listener(), kind, path).save_as(folder.path(u"flat.xml"), kind_of(kind).flat_filter);
  std::string xml = folder.read(u"flat.xml");
  // Cuts out dates and counters of the file, and its last view.
  const auto cut = [&](std::string_view from, std::string_view to) {
    for (std::size_t at = xml.find(from); at != std::string::npos; at = xml.find(from, at))
      xml.erase(at, std::min(xml.find(to, at), xml.size() - to.size()) + to.size() - at);
  };
  cut("<office:meta>", "</office:meta>");
  cut("<office:settings>", "</office:settings>");
  if (pictures == Pictures::kLeftOut) cut("<office:binary-data>", "</office:binary-data>");
  cut("<office:font-face-decls>", "</office:font-face-decls>");
  // LibreOffice distinguishes lists, comments and fonts of one family by random numbers.
  for (const auto& [expression, replacement] :
       {std::pair("\"list[0-9]+\"", "\"list\""), std::pair("__Annotation__[0-9_]+", "__Annotation__"),
        std::pair("(style:font-name[a-z-]*=\"[^\"0-9]*)[0-9]*\"", "$1\"")})
    xml = std::regex_replace(xml, std::regex(expression), replacement);
  return xml;
}

void OfficeFixture::open_and_save(std::u16string_view path, OfficeKind kind) {
  OfficeDocument(office_listener(), kind, path).save();
}

std::vector<std::string> segments_of(std::string_view xml) {
  std::vector<std::string> segments;
  for (const auto& [begin, end] : contents_of(xml)) {
    std::string text;
    bool is_in_tag = false;
    for (const char c : xml.substr(begin, end - begin)) {
      if (c == '<') is_in_tag = true;
      if (!is_in_tag) text += c;
      if (c == '>') is_in_tag = false;
    }
    segments.push_back(text);
  }
  return segments;
}

std::string changed_segments(std::string_view xml) {
  std::string changed(xml);
  for (const auto& [begin, end] : contents_of(xml)) {
    bool is_markup = false;
    for (std::size_t i = begin; i < end; ++i) {
      if (xml[i] == '<' || xml[i] == '&') is_markup = true;
      if (!is_markup) changed[i] = moved(xml[i]);
      if (xml[i] == '>' || xml[i] == ';') is_markup = false;
    }
  }
  return changed;
}

std::string without_change(std::string text) {
  for (char& c : text) c = std::min(c, moved(c));
  return text;
}

}  // namespace kavo::test
