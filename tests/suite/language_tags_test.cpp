#include "suite/languages/language_tags.h"

#include <gtest/gtest.h>

#include "platform/unicode.h"

namespace kavo::test {
namespace {

std::string code_of(const LanguageRow* row) { return row == nullptr ? "none" : to_utf8(row->code); }

TEST(LanguageTags, CodesAndTagsMeanALanguage) {
  const struct {
    const char* name;
    const char16_t* tag;
    const char* code;
  } cases[] = {
      {"a code", u"FR", "FR"},
      {"with a region", u"EN-US", "EN-US"},
      {"small letters", u"fr", "FR"},
      {"as tags are written", u"de-AT", "DE-AT"},
      {"an area", u"es-419", "ES-419"},
      {"a variant", u"ca-ES-valencia", "CA-ES-VALENCIA"},
      {"script and region", u"sr-Latn-RS", "SR-LATN-RS"},
      {"a script alone", u"zh-Hant", "ZH-HANT"},
      {"the script that the region has", u"zh-Hant-TW", "ZH-TW"},
      {"another region's", u"zh-Hans-SG", "ZH-SG"},
      {"the script that the language has", u"fr-Latn", "FR"},
      {"the script of a language and a region", u"ja-Jpan-JP", "JA-JP"},
      {"a script that the code leaves out", u"mn-Cyrl-MN", "MN-MN"},
      {"the only script of the region", u"ha-NG", "HA-LATN-NG"},
      {"not the first script", u"pa-PK", "PA-ARAB-PK"},
      {"one of two scripts", u"uz-UZ", "UZ-LATN-UZ"},
      {"Bokmål", u"nb", "NB"},
      {"Norwegian of Norway", u"no-NO", "NB-NO"},
      {"a replaced language", u"iw", "HE"},
      {"a replaced language with a region", u"iw-IL", "HE-IL"},
      {"a replaced language that was a script", u"sh-BA", "SR-LATN-BA"},
      {"Mandarin", u"cmn-Hant-TW", "ZH-TW"},
      {"Central Kurdish", u"ckb-IQ", "KU-ARAB-IQ"},
      {"Dari", u"fa-AF", "PRS-AF"},
      {"the traditional sort as Windows writes it", u"es-ES_tradnl", "ES-ES-TRADNL"},
      {"the traditional sort as a tag", u"es-ES-u-co-trad", "ES-ES-TRADNL"},
      {"a name", u"German", "none"},
      {"two", u"FR,DE", "none"},
      {"unknown", u"XX", "none"},
      {"an unknown region", u"fr-XX", "none"},
      {"the other script", u"fr-Cyrl", "none"},
      {"the other script of a region", u"zh-Hant-CN", "none"},
      {"a script without evidence", u"sr-RS", "none"},
      {"nothing", u"", "none"},
      {"a dash", u"-", "none"},
      {"an open tag", u"fr-", "none"},
      {"a blank", u" FR", "none"},
      {"an underscore", u"pt_BR", "none"},
  };
  for (const auto& test : cases) EXPECT_EQ(code_of(find_language(test.tag)), test.code) << test.name;
}

TEST(LanguageTags, EveryCodeAndTagOfTheTableMeansItsOwnLanguage) {
  ASSERT_FALSE(language_rows().empty());
  for (const LanguageRow& row : language_rows()) {
    EXPECT_EQ(code_of(find_language(row.code)), to_utf8(row.code));
    EXPECT_EQ(code_of(find_language(ascii_lower(row.code))), to_utf8(row.code));
    for (std::u16string_view rest = row.tags; !rest.empty();) {
      const std::size_t end = std::min(rest.find(u' '), rest.size());
      EXPECT_EQ(code_of(find_language(rest.substr(0, end))), to_utf8(row.code)) << to_utf8(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
}

TEST(LanguageTags, NearLanguagesAreNamed) {
  const struct {
    const char* name;
    const char16_t* text;
    std::vector<std::string> codes;
  } cases[] = {
      {"a name", u"German", {"DE"}},
      {"in capitals", u"GERMAN", {"DE"}},
      {"letters beyond ASCII", u"NORWEGIAN (BOKMÅL)", {"NB"}},
      {"a name with its region", u"English (United Kingdom)", {"EN-GB"}},
      {"misspelt", u"Germn", {"DE"}},
      {"misspelt twice", u"Portugese", {"PT"}},
      {"abbreviated", u"Span", {"ES"}},
      {"with another region", u"fr-XX", {"FR"}},
      {"with another script", u"zh-Hant-CN", {"ZH-HANT", "ZH"}},
      {"without its script", u"sr-RS", {"SR-CYRL-RS", "SR-LATN-RS", "SR"}},
      {"as other systems write it", u"pt_BR", {"PT-BR", "PT"}},
      {"three letters", u"fra", {"FR"}},
      {"an abbreviation", u"JPN", {"JA"}},
      {"two letters of names", u"po", {"PL", "PT"}},
      {"an inhabitant's", u"Brazilian Portuguese", {"PT-BR"}},
      {"a name in its own language", u"Deutsch", {}},
      {"a region", u"JP", {"JA-JP"}},
      {"a small region", u"at", {"DE-AT", "EN-AT"}},
      {"a country", u"Austria", {"DE-AT", "EN-AT"}},
      {"with blanks around", u" FR ", {"FR"}},
      {"nothing like it", u"Klingon", {}},
      {"nothing", u"", {}},
      {"a tag that is known", u"zh-Hant-TW", {"ZH-TW"}},
  };
  for (const auto& test : cases) {
    std::vector<std::string> codes;
    for (const LanguageRow* row : nearest_languages(test.text)) codes.push_back(code_of(row));
    if (test.codes.empty())
      EXPECT_EQ(codes, test.codes) << test.name;
    else
      EXPECT_TRUE(codes.size() >= test.codes.size() && std::equal(test.codes.begin(), test.codes.end(), codes.begin()))
          << test.name << ": " << testing::PrintToString(codes);
  }
}

TEST(LanguageTags, ALongTextIsNotCompared) {
  EXPECT_TRUE(nearest_languages(std::u16string(1'000'000, u'-')).empty());
  EXPECT_TRUE(nearest_languages(u"German" + std::u16string(1'000'000, u'n')).empty());
}

TEST(LanguageTags, PeopleLearnWhatTheyMayHaveMeant) {
  const struct {
    const char16_t* text;
    const char* answer;
  } cases[] = {
      {u"GERMAN", "GERMAN is not a language that the suite knows; did you mean DE (German)?"},
      {u"pt_BR",
       "pt_BR is not a language that the suite knows; did you mean PT-BR (Portuguese (Brazil)) or PT (Portuguese)?"},
      {u"Klingon", "Klingon is not a language that the suite knows; give its code, such as FR, EN-US or SR-LATN-RS"},
      {u"FR,DE", "FR,DE is a list; each run takes one language, so start one run for each"},
      {u"FR DE", "FR DE is a list; each run takes one language, so start one run for each"},
      {u"FR;XX", "FR;XX is a list; each run takes one language, so start one run for each"},
      {u"", "a language is missing: give its code, such as FR or EN-US"},
  };
  for (const auto& test : cases) EXPECT_EQ(to_utf8(unknown_language_text(test.text)), test.answer);
}

}  // namespace
}  // namespace kavo::test
