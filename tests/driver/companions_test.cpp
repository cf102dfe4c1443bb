#include "driver/companions.h"

#include <gtest/gtest.h>

#include "support/failures.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class CompanionsTest : public PortsFixture {};

TEST_F(CompanionsTest, WhatADocumentNeedsFollowsFromItsPreparedType) {
  const struct {
    const char* name;
    const char16_t* tud;
    std::vector<std::u16string> companions;
    bool has_way_back;
  } cases[] = {
      {"server page", u"C:\\w\\index_asp_htm_FR.tud", {u"C:\\w\\index_asp_SCR_FR.tud"}, true},
      {"any case", u"C:\\w\\index_asp_HTM_FR.tud", {u"C:\\w\\index_asp_SCR_FR.tud"}, true},
      {"page", u"C:\\w\\a_b_html_htm_FR.tud", {u"C:\\w\\a_b_html_SCR_FR.tud"}, true},
      {"scripts", u"C:\\w\\index_asp_scr_FR.tud", {}, false},
      {"manual",
       u"C:\\w\\manual_mif_FR.tud",
       {u"C:\\w\\KAVO_ix_mif_FR.tud", u"C:\\w\\KAVO_xr_mif_FR.tud", u"C:\\w\\KAVO_va_mif_FR.tud"},
       true},
      {"presentation", u"C:\\w\\deck_ppt_FR.tud", {u"C:\\w\\deck.ppt"}, true},
      {"workbook", u"C:\\w\\old_deck_xls_FR.tud", {u"C:\\w\\old_deck.xls"}, true},
      {"Word document", u"C:\\w\\a_doc_FR.tud", {}, true},
      {"RTF document", u"C:\\w\\a_rtf_FR.tud", {}, true},
      {"text", u"C:\\w\\a_txt_FR.tud", {}, false},
      {"resource script", u"C:\\w\\a_rc_FR.tud", {}, false},
      {"a name of somebody's own", u"C:\\w\\report.tud", {}, false},
      {"no name", u"", {}, false},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(companions_of(TudName(test.tud)), test.companions) << test.name;
    EXPECT_EQ(has_way_back(TudName(test.tud)), test.has_way_back) << test.name;
  }
}

TEST_F(CompanionsTest, OnlyThoseThatAreNotThereAreMissing) {
  const TudName manual(u"C:\\w\\manual_mif_FR.tud");
  EXPECT_EQ(missing_companions(manual), companions_of(manual));
  files.put(u"C:\\w\\kavo_IX_mif_FR.tud", "");
  files.put(u"C:\\w\\KAVO_va_mif_FR.tud", "");
  EXPECT_EQ(missing_companions(manual), (std::vector<std::u16string>{u"C:\\w\\KAVO_xr_mif_FR.tud"}));
  files.put(u"C:\\w\\KAVO_xr_mif_FR.tud", "");
  EXPECT_TRUE(missing_companions(manual).empty());
}

TEST_F(CompanionsTest, OneThatCannotBeLookedAtIsAnError) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  const TudName manual(u"C:\\w\\manual_mif_FR.tud");
  for (std::size_t number = 1; number <= companions_of(manual).size(); ++number) {
    faulty.set_fault({.operation = number, .number = FailureNumber::kPermissionDenied});
    EXPECT_EQ(failure_number([&] { missing_companions(manual); }), 70) << number;
  }
}

}  // namespace
}  // namespace kavo::test
