// The wizard with the answers that its driver would give about file types.
#pragma once

#include <string>
#include <vector>

#include "common/cRegistry.h"
#include "common/program_settings.h"
#include "forms/fake_presenter.h"
#include "support/ports_fixture.h"
#include "ui/fake_languages.h"
#include "ui/frmWizard.h"

namespace kavo::test {

// A component that hands out the memories that a test says.
struct FakeMemories {
  std::u16string created, opened;
  bool fails = false;
  bool is_interrupted = false;  // while it asks for a file
  std::vector<std::string> calls;

  ObjectRef component() {
    const auto answer = [this](std::string name, std::u16string& path) {
      calls.push_back(std::move(name));
      maybe_raise(fails);
      if (is_interrupted) throw interruption();
      return path;
    };
    return std::make_shared<FakeObject>(std::vector<Member>{
        {u"CreateNew", MemberKind::kMethod, 0, 0, [=, this](auto) -> Value { return answer("CreateNew", created); }},
        {u"OpenExisting", MemberKind::kMethod, 0, 0,
         [=, this](auto) -> Value { return answer("OpenExisting", opened); }}});
  }
};

class WizardFixture : public PortsFixture {
 protected:
  WizardFixture() {
    automation.factories[u"K19Suite.LanguageInformation"] = [] {
      std::vector<ListedLanguage> languages = five_languages();
      languages.push_back({u"French", u"FR", 1252, 0x0C});
      return make_language_information(languages, three_code_pages());
    };
    automation.factories[u"K19Suite.TranslationMemory"] = [this] { return memories.component(); };
    services.file_type_of = [](std::u16string_view name) {
      const auto ends = [&](std::u16string_view extension) { return name.ends_with(extension); };
      return ends(u".htm") ? 3 : ends(u".asp") ? 4 : ends(u".mif") ? 5 : ends(u".txt") ? 7 : ends(u".xls") ? 9 : 0;
    };
    services.has_filter_settings = [this](std::int32_t type) { return type != 0 && type == type_with_settings; };
    services.show_filter_settings = [this](std::int32_t type) {
      settings_shown.push_back(type);
      maybe_raise(settings_fail);
    };
  }
  static std::u16string setting(std::u16string_view key) { return kWizardSettings.get(key, u"(none)"); }
  static cRegistry::Variant remembered(std::u16string_view name) {
    cRegistry value;
    value.SectionKey(u"Software\\MOR\\MOR Edit\\Settings");
    value.ValueKey(name);
    return value.Value();
  }
  static void remember(std::u16string_view name, const cRegistry::Variant& stored) {
    cRegistry value;
    value.SectionKey(u"Software\\MOR\\MOR Edit\\Settings");
    value.ValueKey(name);
    value.ValueType(std::holds_alternative<std::int32_t>(stored) ? 4 : 1);
    value.SetValue(stored);
  }

  FakeMemories memories;
  WizardServices services;
  std::int32_t type_with_settings = 0;
  std::vector<std::int32_t> settings_shown;
  bool settings_fail = false;
  FakePresenter person;
};

}  // namespace kavo::test
