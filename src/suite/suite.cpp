#include "suite/suite.h"

#include "suite/components/filter_catalogue.h"
#include "suite/components/language_information.h"
#include "suite/components/translation_memory.h"
#include "suite/components/tud_document.h"

namespace kavo {
namespace {

template <class Component>
ObjectRef create() {
  return std::make_shared<Component>();
}

constexpr SuiteClass kClasses[] = {
    {u"K19Suite.FilterCatalogue", u"KAVO reference suite: filter catalogue", create<FilterCatalogue>},
    {u"K19Suite.TUDDocument", u"KAVO reference suite: bilingual document", create<TUDDocument>},
    {u"K19Suite.LanguageInformation", u"KAVO reference suite: languages and code pages", create<LanguageInformation>},
    {u"K19Suite.TranslationMemory", u"KAVO reference suite: translation memory", create<TranslationMemory>},
};

}  // namespace

std::span<const SuiteClass> suite_classes() { return kClasses; }

void register_suite_factories() {
  for (const SuiteClass& known : kClasses) register_factory(known.programmatic_identifier, known.create);
}

}  // namespace kavo
