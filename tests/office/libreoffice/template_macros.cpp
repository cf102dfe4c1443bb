#include "office/libreoffice/template_macros.h"

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XNameContainer.hpp>
#include <com/sun/star/document/MacroExecMode.hpp>
#include <com/sun/star/frame/XDesktop2.hpp>
#include <com/sun/star/frame/XStorable.hpp>
#include <com/sun/star/script/XLibraryContainer.hpp>
#include <com/sun/star/script/provider/XScriptProviderSupplier.hpp>
#include <com/sun/star/util/XCloseable.hpp>

#include "office/libreoffice/office_engine.h"
#include "office/libreoffice/office_listener.h"
#include "office/libreoffice/uno_text.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

namespace script = com::sun::star::script;
using com::sun::star::container::XNameContainer;
using com::sun::star::lang::XComponent;
using com::sun::star::uno::Any;
using com::sun::star::uno::Reference;
using com::sun::star::uno::Sequence;
using com::sun::star::uno::UNO_QUERY_THROW;

Reference<XComponent> open(std::u16string_view path) {
  return office_listener()->desktop()->loadComponentFromURL(
      url_of(path), "_blank", 0,
      property_list({property("Hidden", true),
                     property("MacroExecutionMode", com::sun::star::document::MacroExecMode::ALWAYS_EXECUTE_NO_WARN)}));
}

void close(const Reference<XComponent>& document) {
  Reference<com::sun::star::util::XCloseable>(document, UNO_QUERY_THROW)->close(true);
}

}  // namespace

TemplateMacros::TemplateMacros(std::u16string_view template_file) {
  office_listener()->run([&] { template_ = open(template_file); });
}

TemplateMacros::~TemplateMacros() {
  office_listener()->run([&] { close(template_); });
}

void TemplateMacros::put_module(std::string_view name, std::string_view text) {
  office_listener()->run([&] {
    Reference<script::XLibraryContainer> libraries;
    Reference<com::sun::star::beans::XPropertySet>(template_, UNO_QUERY_THROW)->getPropertyValue("BasicLibraries") >>=
        libraries;
    const Reference<XNameContainer> library(libraries->getByName("VBAProject"), UNO_QUERY_THROW);
    const rtl::OUString module = to_uno(to_utf16(name));
    const Any content(to_uno(to_utf16(text)));
    library->hasByName(module) ? library->replaceByName(module, content) : library->insertByName(module, content);
  });
}

std::string TemplateMacros::evaluate(std::string_view expression) {
  put_module("Evaluation", "Option VBASupport 1\nFunction Evaluate\nOn Error GoTo Failed\n" + std::string(expression) +
                               "\nExit Function\nFailed:\nEvaluate = Err.Description\nEnd Function\n");
  return office_listener()->run([&] {
    const Reference<script::provider::XScriptProviderSupplier> supplier(template_, UNO_QUERY_THROW);
    const auto function = supplier->getScriptProvider()->getScript(
        "vnd.sun.star.script:VBAProject.Evaluation.Evaluate?language=Basic&location=document");
    Sequence<sal_Int16> places;
    Sequence<Any> results;
    rtl::OUString answer;
    // Nothing at all is answered when a module of the project cannot be compiled.
    if (!(function->invoke({}, places, results) >>= answer)) return std::string("not compiled");
    return to_utf8(from_uno(answer));
  });
}

std::string TemplateMacros::run_on(std::u16string_view workbook, std::string_view macro) {
  Reference<XComponent> opened;
  office_listener()->run([&] { opened = open(workbook); });
  const std::string raised = evaluate(std::string(macro) + "\nEvaluate = \"\"");
  office_listener()->run([&] {
    if (raised.empty())
      Reference<com::sun::star::frame::XStorable>(opened, UNO_QUERY_THROW)
          ->storeToURL(url_of(workbook), property_list({property("FilterName", to_uno(u"MS Excel 97"))}));
    close(opened);
  });
  return raised;
}

}  // namespace kavo::test
