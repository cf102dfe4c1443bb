// K19Suite.dll: the reference suite's components for automation hosts. The classes themselves know nothing of COM.
#include <algorithm>
#include <iterator>
#include <vector>

#include "automation_server/component_library.h"
#include "interchange/office_interchange.h"
#include "office/office_converter.h"
#include "platform/failure.h"
#include "platform/win32/dispatch.h"
#include "suite/suite.h"

namespace kavo {
namespace {

struct ClassIdentifier {
  std::u16string_view programmatic_identifier;
  CLSID class_id;
};

// These never change. K19Suite.manifest.in has them, too.
constexpr ClassIdentifier kClassIdentifiers[] = {
    {u"K19Suite.FilterCatalogue", {0x4D99D16E, 0xE584, 0x47D3, {0x8B, 0x85, 0xE8, 0x87, 0x41, 0xC2, 0x6D, 0x37}}},
    {u"K19Suite.TUDDocument", {0xF8D5E790, 0x2248, 0x484C, {0xAA, 0x5A, 0x1E, 0xF0, 0x98, 0x61, 0x32, 0x7B}}},
    {u"K19Suite.LanguageInformation", {0xAA138DDB, 0x163E, 0x41F0, {0xA7, 0xBC, 0x34, 0x29, 0x24, 0x83, 0x6D, 0x45}}},
    {u"K19Suite.TranslationMemory", {0x3C52A7BA, 0xF807, 0x440D, {0x85, 0xF7, 0x9A, 0x80, 0x80, 0x3D, 0x9D, 0xF2}}},
};

unique_interface<IUnknown> make_component(const ComponentClass& row) {
  for (const SuiteClass& known : suite_classes())
    if (known.programmatic_identifier == row.programmatic_identifier)
      return unique_interface<IUnknown>(make_dispatch(known.create()).release());
  throw failure(FailureNumber::kCannotCreateObject,
                std::u16string(row.programmatic_identifier) + u": no such component");
}

// The suite's classes that have an identifier above.
std::vector<ComponentClass> component_classes() {
  std::vector<ComponentClass> classes;
  for (const SuiteClass& known : suite_classes()) {
    const auto found = std::find_if(
        std::begin(kClassIdentifiers), std::end(kClassIdentifiers),
        [&](const ClassIdentifier& row) { return row.programmatic_identifier == known.programmatic_identifier; });
    if (found != std::end(kClassIdentifiers))
      classes.push_back({found->class_id, known.programmatic_identifier, known.description, make_component});
  }
  return classes;
}

}  // namespace

const ComponentLibrary& component_library() {
  static const std::vector<ComponentClass> classes = [] {
    // A host may hand an Office document to a filter directly.
    bring_office_interchange(make_office_converter);
    return component_classes();
  }();
  static const ComponentLibrary library{classes, nullptr};
  return library;
}

}  // namespace kavo
