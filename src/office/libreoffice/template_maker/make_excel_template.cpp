// Builds "kavo.xls": an empty workbook whose VBA project holds the modules given.
//
//   make_excel_template OUTPUT.xls MODULE.bas...
#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XNameContainer.hpp>
#include <com/sun/star/frame/XLoadable.hpp>
#include <com/sun/star/frame/XStorable.hpp>
#include <com/sun/star/lang/XMultiComponentFactory.hpp>
#include <com/sun/star/script/ModuleInfo.hpp>
#include <com/sun/star/script/ModuleType.hpp>
#include <com/sun/star/script/XLibraryContainer.hpp>
#include <com/sun/star/script/vba/XVBACompatibility.hpp>
#include <com/sun/star/script/vba/XVBAModuleInfo.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "office/libreoffice/office_engine.h"
#include "office/libreoffice/office_listener.h"
#include "office/libreoffice/uno_text.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

namespace script = com::sun::star::script;
namespace frame = com::sun::star::frame;
using com::sun::star::container::XNameContainer;
using com::sun::star::uno::Any;
using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY_THROW;

std::string content_of(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw office_failure(to_utf16(file.string()) + u" cannot be read");
  std::string content{std::istreambuf_iterator<char>(stream), {}};
  // The container holds the name. LibreOffice would take the line for code.
  return content.starts_with("Attribute") ? content.substr(content.find('\n') + 1) : content;
}

void add_module(const Reference<XNameContainer>& library, const std::filesystem::path& file) {
  const rtl::OUString name = to_uno(to_utf16(file.stem().string()));
  script::ModuleInfo information;
  information.ModuleType = script::ModuleType::NORMAL;
  Reference<script::vba::XVBAModuleInfo>(library, UNO_QUERY_THROW)->insertModuleInfo(name, information);
  library->insertByName(name, Any(to_uno(to_utf16(content_of(file)))));
}

void make_template(OfficeListener& listener, const std::filesystem::path& output,
                   const std::vector<std::filesystem::path>& modules) {
  const Reference<frame::XLoadable> workbook(listener.context()->getServiceManager()->createInstanceWithContext(
                                                 "com.sun.star.sheet.SpreadsheetDocument", listener.context()),
                                             UNO_QUERY_THROW);
  workbook->initNew();
  Reference<script::XLibraryContainer> libraries;
  Reference<com::sun::star::beans::XPropertySet>(workbook, UNO_QUERY_THROW)->getPropertyValue("BasicLibraries") >>=
      libraries;
  const Reference<script::vba::XVBACompatibility> compatibility(libraries, UNO_QUERY_THROW);
  compatibility->setVBACompatibilityMode(true);
  compatibility->setProjectName("VBAProject");
  if (!libraries->hasByName("VBAProject")) libraries->createLibrary("VBAProject");
  const Reference<XNameContainer> library(libraries->getByName("VBAProject"), UNO_QUERY_THROW);
  for (const auto& module : modules) add_module(library, module);
  Reference<frame::XStorable>(workbook, UNO_QUERY_THROW)
      ->storeToURL(url_of_host(std::filesystem::absolute(output).string()),
                   property_list({property("FilterName", to_uno(u"MS Excel 97"))}));
}

}  // namespace
}  // namespace kavo

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: make_excel_template OUTPUT.xls MODULE.bas...\n", stderr);
    return 2;
  }
  try {
    const auto listener = kavo::office_listener();
    listener->run([&] { kavo::make_template(*listener, argv[1], {argv + 2, argv + argc}); });
  } catch (const kavo::failure& reason) {
    std::fprintf(stderr, "make_excel_template: %s\n", reason.what());
    kavo::end_office_engine();
    return 1;
  }
  kavo::end_office_engine();
  return 0;
}
