#include <gtest/gtest.h>

#include <set>

#include "platform/unicode.h"
#include "suite/components/language_information.h"
#include "support/ports_fixture.h"
#include "ui/fake_languages.h"
#include "ui/morLanguage.h"

namespace kavo::test {
namespace {

class PickerTest : public PortsFixture {
 protected:
  PickerTest() { source(five_languages()); }
  void source(std::vector<ListedLanguage> languages, std::vector<ListedCodePage> code_pages = three_code_pages()) {
    automation.factories[u"K19Suite.LanguageInformation"] = [=] {
      return make_language_information(languages, code_pages);
    };
  }
  // A picker that writes down its events.
  struct Recorded {
    explicit Recorded(const LanguagePickerDesign& design = {}) : picker(form, u"morLang", 140, 140, 2000, design) {
      picker.LanguageChange = [this] { events += 'L'; };
      picker.CharSetChange = [this] { events += 'C'; };
    }
    Form form{u"form"};
    morLanguage picker;
    std::string events;
  };
  static std::vector<std::u16string> texts(const ItemControl& list) {
    std::vector<std::u16string> all;
    for (const ListItem& item : list.items()) all.push_back(item.text);
    return all;
  }
  static void choose(ItemControl& list, std::u16string_view text) { list.ListIndex(list.find(text)); }
};

TEST_F(PickerTest, StartsWithEveryBaseOnceAndAmericanEnglish) {
  const Recorded test;
  EXPECT_EQ(texts(test.picker.cmbLanguage),
            (std::vector<std::u16string>{u"Danish", u"English", u"French", u"Japanese"}));
  EXPECT_EQ(texts(test.picker.cmbEncoding),
            (std::vector<std::u16string>{u"Western European", u"Central European", u"Japanese (Shift-JIS)"}));
  EXPECT_EQ(test.picker.LanguageCode(), u"EN-US");
  EXPECT_EQ(test.picker.lblLanguage.Caption(), u"Language");
  EXPECT_EQ(test.picker.lblCharSet.Caption(), u"Character set");
}

TEST_F(PickerTest, EnglishOfTwoCountriesIsOneBaseWithTwoVariantsAndTheAmericanIsPreselected) {
  source({{u"English (U.K.)", u"EN-GB"}, {u"English (U.S.)", u"EN-US"}});
  const Recorded test;
  EXPECT_EQ(texts(test.picker.cmbLanguage), std::vector<std::u16string>{u"English"});
  EXPECT_EQ(texts(test.picker.cmbVariant), (std::vector<std::u16string>{u"(U.K.)", u"(U.S.)"}));
  EXPECT_EQ(test.picker.cmbVariant.ListIndex(), 1);
  EXPECT_EQ(test.picker.LanguageDescription(), u"English (U.S.)");
}

TEST_F(PickerTest, DescriptionWithTwoHyphensIsSplitThere) {
  const LanguageName name = split_language_name(u"Chinese -- Traditional");
  EXPECT_EQ(name.base, u"Chinese");
  EXPECT_EQ(name.variant, u"-- Traditional");
  source({{u"Chinese -- Traditional", u"ZH-TW", 950}});
  const Recorded test({.LanguageCode = u"ZH-TW"});
  EXPECT_EQ(test.picker.cmbLanguage.Text(), u"Chinese");
  EXPECT_EQ(test.picker.cmbVariant.Text(), u"-- Traditional");
}

TEST_F(PickerTest, DescriptionsAreSplitAtTheBracketFirst) {
  struct Case {
    std::u16string_view description, base, variant;
  };
  for (const Case& test :
       {Case{u"Danish", u"Danish", u"<Default>"}, Case{u"  Danish  ", u"Danish", u"<Default>"},
        Case{u"A -- B (C)", u"A -- B", u"(C)"}, Case{u"(C)", u"", u"(C)"}, Case{u"", u"", u"<Default>"},
        Case{u"A--B--C", u"A", u"--B--C"}, Case{u"A - B", u"A - B", u"<Default>"}}) {
    EXPECT_EQ(split_language_name(test.description).base, test.base);
    EXPECT_EQ(split_language_name(test.description).variant, test.variant);
  }
}

TEST_F(PickerTest, UsualVariantsArePreselected) {
  struct Case {
    const char* name;
    std::vector<ListedLanguage> languages;
    std::u16string_view preselected;
  };
  for (const Case& test :
       {Case{"same code twice",
             {{u"French (Canada)", u"FR-CA"}, {u"French (France)", u"FR-FR"}, {u"French (Swiss)", u"FR-CH"}},
             u"FR-FR"},
        Case{"two letters", {{u"German", u"DE"}, {u"German (Swiss)", u"DE-CH"}}, u"DE"},
        Case{"default", {{u"Malay", u"MS-MY"}, {u"Malay (Brunei)", u"MS-BN"}}, u"MS-MY"},
        Case{"the last of several", {{u"German", u"DE"}, {u"German (Germany)", u"DE-DE"}}, u"DE-DE"},
        Case{"the first of none", {{u"Arabic (Egypt)", u"AR-EG"}, {u"Arabic (Oman)", u"AR-OM"}}, u"AR-EG"}}) {
    source(test.languages);
    const Recorded recorded;
    EXPECT_EQ(recorded.picker.LanguageCode(), test.preselected) << test.name;
  }
}

TEST_F(PickerTest, AVariantIsADescriptionThatBeginsWithTheBaseAsAWord) {
  source({{u"Malay (Malaysia)", u"MS-MY"}, {u"Malayalam (India)", u"ML-IN"}, {u"Malay Jawi", u"MS-BN"}});
  Recorded test;
  choose(test.picker.cmbLanguage, u"Malay");
  EXPECT_EQ(texts(test.picker.cmbVariant), (std::vector<std::u16string>{u"(Malaysia)", u"Jawi"}));
}

TEST_F(PickerTest, ChoosingAVariantAppliesItsCodePageAndRaisesBothEvents) {
  Recorded test;
  choose(test.picker.cmbLanguage, u"Japanese");
  EXPECT_EQ(test.events, "CL");
  EXPECT_EQ(test.picker.LanguageCode(), u"JA");
  EXPECT_EQ(test.picker.CharSetNumber(), 932);
  EXPECT_EQ(test.picker.CharSetCode(), u"shift_jis");
  EXPECT_EQ(test.picker.CharSetDescription(), u"Japanese (Shift-JIS)");
}

TEST_F(PickerTest, VariantWithAMissingCodePageKeepsTheEncodingAndStillRaisesLanguageChange) {
  source({{u"Danish", u"DA", 1252}, {u"Thai", u"TH", 874}});
  Recorded test({.LanguageCode = u"DA"});
  test.picker.CharSetNumber(1250);
  test.events.clear();
  choose(test.picker.cmbLanguage, u"Thai");
  EXPECT_EQ(test.events, "L");
  EXPECT_EQ(test.picker.LanguageCode(), u"TH");
  EXPECT_EQ(test.picker.CharSetNumber(), 1250);
}

TEST_F(PickerTest, WritingTheCodeChoosesThatLanguage) {
  Recorded test;
  test.picker.LanguageCode(u"EN-GB");
  EXPECT_EQ(test.picker.LanguageDescription(), u"English (U.K.)");
  EXPECT_EQ(test.picker.cmbLanguage.Text(), u"English");
  EXPECT_EQ(test.picker.cmbVariant.Text(), u"(U.K.)");
  for (const std::u16string_view unknown : {u"en-gb", u"XX", u""}) {
    test.picker.LanguageCode(unknown);
    EXPECT_EQ(test.picker.LanguageCode(), u"EN-GB") << "codes are compared exactly";
  }
}

TEST_F(PickerTest, WritingACharacterSetThatIsNotThereChangesNothing) {
  Recorded test;
  test.picker.CharSetNumber(1250);
  EXPECT_EQ(test.events, "C");
  test.picker.CharSetNumber(874);
  EXPECT_EQ(test.picker.CharSetNumber(), 1250);
  EXPECT_EQ(test.events, "C");
}

TEST_F(PickerTest, HiddenPartsShrinkThePicker) {
  Recorded test;
  const std::int32_t whole = test.picker.bottom();
  test.picker.ShowCharSet(false);
  const std::int32_t without_set = test.picker.bottom();
  EXPECT_FALSE(test.picker.cmbEncoding.Visible());
  EXPECT_FALSE(test.picker.lblCharSet.Visible());
  test.picker.ShowLabels(false);
  EXPECT_FALSE(test.picker.lblLanguage.Visible());
  EXPECT_LT(test.picker.bottom(), without_set);
  EXPECT_LT(without_set, whole);
  test.picker.ShowCharSet(true);
  EXPECT_FALSE(test.picker.lblCharSet.Visible()) << "labels stay hidden";
  test.picker.ShowLabels(true);
  EXPECT_EQ(test.picker.bottom(), whole);
  test.picker.Visible(false);
  for (const Control* control : test.form.controls()) EXPECT_FALSE(control->Visible());
}

TEST_F(PickerTest, EnabledReachesEveryPart) {
  Recorded test({.Enabled = false});
  EXPECT_FALSE(test.picker.Enabled());
  for (const Control* control : test.form.controls()) EXPECT_FALSE(control->Enabled());
  test.picker.Enabled(true);
  for (const Control* control : test.form.controls()) EXPECT_TRUE(control->Enabled());
}

TEST_F(PickerTest, WithoutLanguagesItHoldsNothing) {
  source({}, {});
  Recorded test;
  test.picker.LanguageCode(u"EN-US");
  test.picker.CharSetNumber(1252);
  EXPECT_EQ(test.picker.LanguageCode(), u"");
  EXPECT_EQ(test.picker.LanguageDescription(), u"");
  EXPECT_EQ(test.picker.CharSetNumber(), 0);
  EXPECT_EQ(test.picker.cmbLanguage.ListCount(), 0);
}

TEST_F(PickerTest, EveryLanguageOfTheReferenceSuiteCanBeChosen) {
  automation.factories[u"K19Suite.LanguageInformation"] = [] { return std::make_shared<LanguageInformation>(); };
  Recorded test;
  const clsLanguages languages;
  ASSERT_GT(languages.LanguageCount(), 100);
  for (std::int32_t i = 0; i <= languages.LanguageCount(); ++i) {
    test.picker.LanguageCode(languages.LanguageCode(i));
    EXPECT_EQ(test.picker.LanguageCode(), languages.LanguageCode(i));
    EXPECT_EQ(test.picker.LanguageDescription(), languages.LanguageDescription(i));
  }
}

TEST_F(PickerTest, TheUsualVariantOfEachLanguageOfTheReferenceSuiteIsPreselected) {
  automation.factories[u"K19Suite.LanguageInformation"] = [] { return std::make_shared<LanguageInformation>(); };
  Recorded test;
  const struct {
    const char16_t* base;
    const char16_t* code;
  } cases[] = {
      {u"Norwegian", u"NB"},    {u"Persian", u"FA"}, {u"Dari", u"PRS"},      {u"Northern Sami", u"SE"},
      {u"Portuguese", u"PT"},   {u"Catalan", u"CA"}, {u"English", u"EN-US"}, {u"French", u"FR-FR"},
      {u"German", u"DE-DE"},    {u"Chinese", u"ZH"}, {u"Serbian", u"SR"},    {u"Spanish", u"ES-ES"},
      {u"Mongolian", u"MN-MN"}, {u"Arabic", u"AR"},  {u"Japanese", u"JA"},   {u"Swahili", u"SW"},
  };
  for (const auto& expected : cases) {
    choose(test.picker.cmbLanguage, expected.base);
    EXPECT_EQ(test.picker.LanguageCode(), expected.code);
  }
}

// A language whose name begins as another's does would be listed with it, and could be preselected for it.
TEST_F(PickerTest, EachLanguageOfTheReferenceSuiteHasAListOfItsOwn) {
  automation.factories[u"K19Suite.LanguageInformation"] = [] { return std::make_shared<LanguageInformation>(); };
  Recorded test;
  const clsLanguages languages;
  ASSERT_GT(test.picker.cmbLanguage.ListCount(), 100);
  for (std::int32_t base = 0; base < test.picker.cmbLanguage.ListCount(); ++base) {
    test.picker.cmbLanguage.ListIndex(base);
    std::set<std::u16string> listed;
    for (const ListItem& item : test.picker.cmbVariant.items()) {
      EXPECT_TRUE(listed.insert(item.text).second) << to_utf8(item.text);
      const std::u16string description = languages.LanguageDescription(item.data);
      EXPECT_EQ(split_language_name(description).base, test.picker.cmbLanguage.Text());
    }
  }
}

}  // namespace
}  // namespace kavo::test
