#include "suite/language_information.h"

#include <gtest/gtest.h>

#include <set>

#include "suite/language_table.h"
#include "suite/text_coding.h"

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
    EXPECT_TRUE(codes.insert(row.code).second) << testing::PrintToString(row.code);
    EXPECT_TRUE(code_pages.contains(row.code_page)) << testing::PrintToString(row.code);
    EXPECT_FALSE(row.name.empty());
    // A code is part of file names that are split at "_".
    EXPECT_EQ(row.code.find(u'_'), std::u16string_view::npos);
  }
  for (const char16_t* code : {u"FR", u"FR-CA", u"DE", u"JA", u"JA-JP", u"ZH-CN", u"RU-RU", u"AR-SA", u"SR-LATN-RS"})
    EXPECT_TRUE(codes.contains(code)) << testing::PrintToString(code);
}

}  // namespace
}  // namespace kavo::test
