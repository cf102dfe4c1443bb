#include <gtest/gtest.h>

#include "suite/components/language_information.h"
#include "support/ports_fixture.h"
#include "ui/clsLanguages.h"
#include "ui/fake_languages.h"

namespace kavo::test {
namespace {

class LanguagesTest : public PortsFixture {
 protected:
  void source(std::vector<ListedLanguage> languages, std::vector<ListedCodePage> code_pages, SourceFaults faults = {}) {
    automation.factories[u"K19Suite.LanguageInformation"] = [=] {
      return make_language_information(languages, code_pages, faults);
    };
  }
  static void expect_no_languages(const clsLanguages& languages) {
    EXPECT_EQ(languages.LanguageCount(), -1);
    EXPECT_EQ(languages.LanguageDescription(0), u"");
    EXPECT_EQ(languages.LanguageCode(0), u"");
    EXPECT_EQ(languages.LanguageEncoding(0), 0);
    EXPECT_EQ(languages.LanguageLCID(0), 0);
    EXPECT_EQ(languages.LanguageCodePage(0), -1);
  }
  static void expect_no_code_pages(const clsLanguages& languages) {
    EXPECT_EQ(languages.CodePageCount(), -1);
    EXPECT_EQ(languages.CodePageDescription(0), u"");
    EXPECT_EQ(languages.CodePageCode(0), u"");
    EXPECT_EQ(languages.CodePageNumber(0), 0);
  }
};

TEST_F(LanguagesTest, EveryRecordIsCopied) {
  source(five_languages(), three_code_pages());
  const clsLanguages languages;
  EXPECT_EQ(languages.LanguageCount(), 4) << "the highest index, not the number";
  EXPECT_EQ(languages.CodePageCount(), 2);
  for (std::int32_t i = 0; i <= languages.LanguageCount(); ++i) {
    const ListedLanguage listed = five_languages()[static_cast<std::size_t>(i)];
    EXPECT_EQ(languages.LanguageDescription(i), listed.description);
    EXPECT_EQ(languages.LanguageCode(i), listed.code);
    EXPECT_EQ(languages.LanguageEncoding(i), listed.encoding);
    EXPECT_EQ(languages.LanguageLCID(i), listed.lcid);
  }
  for (std::int32_t i = 0; i <= languages.CodePageCount(); ++i) {
    const ListedCodePage listed = three_code_pages()[static_cast<std::size_t>(i)];
    EXPECT_EQ(languages.CodePageDescription(i), listed.description);
    EXPECT_EQ(languages.CodePageCode(i), listed.code);
    EXPECT_EQ(languages.CodePageNumber(i), listed.number);
  }
}

TEST_F(LanguagesTest, FiveReportedAndTheFourthRefusedGivesThree) {
  source(five_languages(), three_code_pages(), {.language_refused = 3});
  const clsLanguages languages;
  EXPECT_EQ(languages.LanguageCount(), 2);
  EXPECT_EQ(languages.LanguageCode(2), u"EN-US");
  EXPECT_EQ(languages.LanguageCode(3), u"");
  EXPECT_EQ(languages.CodePageCount(), 2) << "the other table is not concerned";
}

TEST_F(LanguagesTest, FiveReportedAndTheFourthRaisedAboutGivesThree) {
  source(five_languages(), three_code_pages(), {.language_raised = 3, .code_page_raised = 1});
  const clsLanguages languages;
  EXPECT_EQ(languages.LanguageCount(), 2);
  EXPECT_EQ(languages.CodePageCount(), 0);
}

TEST_F(LanguagesTest, TheFirstRefusedGivesAnEmptyTable) {
  source(five_languages(), three_code_pages(), {.language_refused = 0, .code_page_refused = 0});
  const clsLanguages languages;
  expect_no_languages(languages);
  expect_no_code_pages(languages);
}

TEST_F(LanguagesTest, ASourceThatReportsNoneGivesEmptyTables) {
  source({}, {});
  const clsLanguages languages;
  expect_no_languages(languages);
  expect_no_code_pages(languages);
}

TEST_F(LanguagesTest, AMissingSourceGivesEmptyTables) {
  const clsLanguages languages;
  expect_no_languages(languages);
  expect_no_code_pages(languages);
}

TEST_F(LanguagesTest, ACountThatFailsLeavesTheOtherTable) {
  source(five_languages(), three_code_pages(), {.language_count_raised = true});
  const clsLanguages languages;
  expect_no_languages(languages);
  EXPECT_EQ(languages.CodePageCount(), 2);
}

TEST_F(LanguagesTest, IndicesOutsideTheTableGiveEmptyTexts) {
  source(five_languages(), three_code_pages());
  const clsLanguages languages;
  for (const std::int32_t outside : {-1, languages.LanguageCount() + 1, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(languages.LanguageDescription(outside), u"");
    EXPECT_EQ(languages.LanguageCode(outside), u"");
    EXPECT_EQ(languages.LanguageEncoding(outside), 0);
    EXPECT_EQ(languages.LanguageLCID(outside), 0);
    EXPECT_EQ(languages.LanguageCodePage(outside), -1);
    EXPECT_EQ(languages.CodePageDescription(outside), u"");
    EXPECT_EQ(languages.CodePageCode(outside), u"");
    EXPECT_EQ(languages.CodePageNumber(outside), 0);
  }
}

TEST_F(LanguagesTest, ADefaultCodePageThatIsNotListedHasNoIndex) {
  source({{u"Thai", u"TH", 874}, {u"Danish", u"DA", 1252}}, three_code_pages());
  const clsLanguages languages;
  EXPECT_EQ(languages.LanguageCodePage(0), -1);
  EXPECT_EQ(languages.LanguageCodePage(1), 0);
}

TEST_F(LanguagesTest, TheLowerIndexCountsWhenTwoCodePagesHaveOneNumber) {
  source({{u"Danish", u"DA", 1252}}, {{u"A", u"a", 1250}, {u"B", u"b", 1252}, {u"C", u"c", 1252}});
  EXPECT_EQ(clsLanguages().LanguageCodePage(0), 1);
}

TEST_F(LanguagesTest, WithoutCodePagesNoLanguageHasOne) {
  source({{u"Nothing", u"XX", 0}}, {});
  EXPECT_EQ(clsLanguages().LanguageCodePage(0), -1);
}

TEST_F(LanguagesTest, TheSourceIsReleasedAfterCopying) {
  std::weak_ptr<AutomationObject> made;
  automation.factories[u"K19Suite.LanguageInformation"] = [&] {
    const ObjectRef object = make_language_information(five_languages(), three_code_pages());
    made = object;
    return object;
  };
  const clsLanguages languages;
  EXPECT_TRUE(made.expired());
  EXPECT_EQ(languages.LanguageCount(), 4);
}

TEST_F(LanguagesTest, TheReferenceSuiteFillsBothTables) {
  automation.factories[u"K19Suite.LanguageInformation"] = [] { return std::make_shared<LanguageInformation>(); };
  const clsLanguages languages;
  EXPECT_GT(languages.LanguageCount(), 100);
  EXPECT_GT(languages.CodePageCount(), 10);
  bool has_american = false, has_french = false;
  for (std::int32_t i = 0; i <= languages.LanguageCount(); ++i) {
    EXPECT_NE(languages.LanguageDescription(i), u"");
    if (languages.LanguageCode(i) == u"EN-US") {
      has_american = true;
      EXPECT_EQ(languages.CodePageNumber(languages.LanguageCodePage(i)), 1252);
      EXPECT_EQ(languages.LanguageLCID(i), 0x0409);
    }
    has_french = has_french || languages.LanguageCode(i) == u"FR";
  }
  EXPECT_TRUE(has_american);
  EXPECT_TRUE(has_french);
}

}  // namespace
}  // namespace kavo::test
