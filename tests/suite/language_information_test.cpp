#include "suite/components/language_information.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "formats/text/text_coding.h"
#include "platform/unicode.h"
#include "suite/languages/language_table.h"

namespace kavo::test {
namespace {

TEST(LanguageInformation, FillsRecords) {
  LanguageInformation source;
  const std::int32_t count = as_number(source.get(u"LanguageCount"));
  EXPECT_GT(count, 800);
  bool found = false;
  for (std::int32_t index = 0; index < count; ++index) {
    Argument record[] = {by_value(index),
                         by_value(std::int32_t{1}),
                         by_reference(std::u16string()),
                         by_reference(std::u16string()),
                         by_reference(std::int32_t{0}),
                         by_reference(std::int32_t{0})};
    ASSERT_EQ(as_number(source.invoke(u"FillLanguage", record)), 0);
    if (as_text(record[3].value) != u"EN-US") continue;
    found = true;
    EXPECT_EQ(as_text(record[2].value), u"English (United States)");
    EXPECT_EQ(as_number(record[4].value), 1252);
    EXPECT_EQ(as_number(record[5].value), 0x409);
  }
  EXPECT_TRUE(found);
}

TEST(LanguageInformation, RefusesWhatIsOutside) {
  LanguageInformation source;
  const std::int32_t count = as_number(source.get(u"CodePageCount"));
  for (const std::int32_t index : {-1, count}) {
    Argument record[] = {by_value(index), by_value(std::int32_t{1}), by_reference(std::u16string(u"-")),
                         by_reference(std::u16string()), by_reference(std::int32_t{0})};
    EXPECT_NE(as_number(source.invoke(u"FillCodePage", record)), 0);
    EXPECT_EQ(as_text(record[2].value), u"-");
  }
  Argument layout[] = {by_value(std::int32_t{0}), by_value(std::int32_t{2}), by_reference(std::u16string()),
                       by_reference(std::u16string()), by_reference(std::int32_t{0})};
  EXPECT_NE(as_number(source.invoke(u"FillCodePage", layout)), 0);
}

TEST(LanguageTable, HoldsEachCodeOnceAndKnownCodePages) {
  std::set<std::u16string_view> codes;
  std::set<std::int32_t> code_pages;
  for (const CodePageRow& row : code_page_rows()) {
    EXPECT_TRUE(code_pages.insert(row.number).second);
    EXPECT_NO_THROW(TextCoding(static_cast<unsigned>(row.number)));
  }
  for (const LanguageRow& row : language_rows()) {
    EXPECT_TRUE(codes.insert(row.code).second) << to_utf8(row.code);
    EXPECT_TRUE(code_pages.contains(row.code_page)) << to_utf8(row.code);
    // A code is part of file names that are split at "_".
    EXPECT_EQ(row.code.find(u'_'), std::u16string_view::npos);
  }
  EXPECT_EQ(codes.size(), 899u);
}

TEST(LanguageTable, NoTwoLanguagesHaveOneNameOrOneIdentifier) {
  std::set<std::u16string_view> names;
  std::set<std::int32_t> identifiers;
  for (const LanguageRow& row : language_rows()) {
    EXPECT_TRUE(!row.name.empty() && names.insert(row.name).second) << to_utf8(row.code);
    EXPECT_TRUE(row.lcid == 0x1000 || identifiers.insert(row.lcid).second) << to_utf8(row.code);
  }
}

TEST(LanguageTable, HoldsWhatWindowsHas) {
  const struct {
    const char16_t* code;
    const char16_t* name;
    std::int32_t lcid, code_page;
  } cases[] = {
      {u"FA", u"Persian", 0x29, 1256},
      {u"PRS", u"Dari", 0x8C, 1256},
      {u"PRS-AF", u"Dari (Afghanistan)", 0x48C, 1256},
      {u"CA-ES", u"Catalan (Spain)", 0x403, 1252},
      {u"CA-ES-VALENCIA", u"Catalan (Spain, Valencian)", 0x803, 1252},
      {u"ES-ES", u"Spanish (Spain)", 0xC0A, 1252},
      {u"ES-ES-TRADNL", u"Spanish (Spain, Traditional Sort)", 0x40A, 1252},
      {u"SR-LATN-CS", u"Serbian (Latin, former Serbia & Montenegro)", 0x81A, 1250},
      {u"SR-CYRL-CS", u"Serbian (Cyrillic, former Serbia & Montenegro)", 0xC1A, 1251},
      {u"SR-LATN-RS", u"Serbian (Latin, Serbia)", 0x241A, 1250},
      {u"TZM-TFNG-MA", u"Central Atlas Tamazight (Tifinagh, Morocco)", 0x105F, 65001},
      {u"NB-NO", u"Norwegian (Bokmål, Norway)", 0x414, 1252},
      {u"NN-NO", u"Norwegian (Nynorsk, Norway)", 0x814, 1252},
      {u"QUC", u"Kʼicheʼ", 0x86, 1252},
      {u"JA-JP", u"Japanese (Japan)", 0x411, 932},
      {u"ZH-CN", u"Chinese (Simplified, China)", 0x804, 936},
  };
  for (const auto& test : cases) {
    const auto row = std::ranges::find(language_rows(), test.code, &LanguageRow::code);
    ASSERT_NE(row, language_rows().end()) << to_utf8(test.code);
    EXPECT_EQ(to_utf8(row->name), to_utf8(test.name));
    EXPECT_EQ(row->lcid, test.lcid) << to_utf8(test.code);
    EXPECT_EQ(row->code_page, test.code_page) << to_utf8(test.code);
  }
}

// A variant may have a code page of its own (a script), but not none where its language has one in its script.
TEST(LanguageTable, AVariantTakesTheCodePageOfItsLanguage) {
  std::size_t inherited = 0;
  for (const LanguageRow& row : language_rows()) {
    for (std::u16string_view parent = row.code; parent.find(u'-') != parent.npos;) {
      parent = parent.substr(0, parent.rfind(u'-'));
      const auto found = std::ranges::find(language_rows(), parent, &LanguageRow::code);
      if (found == language_rows().end() || found->script != row.script || found->code_page == 65001) continue;
      EXPECT_EQ(row.code_page, found->code_page) << to_utf8(row.code);
      ++inherited;
    }
  }
  EXPECT_GT(inherited, 400u);
}

}  // namespace
}  // namespace kavo::test
