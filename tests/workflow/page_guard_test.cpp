#include "workflow/page_guard.h"

#include <gtest/gtest.h>

#include "common/checksum.h"
#include "common/document_names.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "suite/document/tud_format.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class PageGuardTest : public PortsFixture {
 protected:
  PageGuardTest() {
    files.put(page, "<p>new <%= name %></p>");
    files.put(protected_page, "<p>old <!-- ASP2HTML 1 --></p>");
    TudHeader header;
    header.original = "page_asp.htm";
    header.source_language = "en-US";
    header.target_language = "fr";
    header.checksum = checksum_of_file(protected_page);
    std::string xml;
    append_tud_start(xml, header);
    append_tud_end(xml);
    files.put(tud_name_of(protected_page, u"FR"), xml);
  }
  const std::u16string page = u"C:\\WORK\\page.asp";
  const std::u16string protected_page = u"C:\\WORK\\page_asp.htm";
};

TEST_F(PageGuardTest, AnOlderPreparationMayBeReplaced) { EXPECT_NO_THROW(refuse_work_beside_prepared_page(page)); }

TEST_F(PageGuardTest, SomebodysWorkMayNot) {
  files.put(protected_page, "<p>somebody wrote <!-- ASP2HTML 1 --></p>");
  EXPECT_THROW(refuse_work_beside_prepared_page(page), failure);
}

TEST_F(PageGuardTest, WhatCannotBeReadIsNotTakenForSomebodysWork) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  FaultyFiles::Fault fault;
  fault.number = FailureNumber::kDeviceError;
  std::int32_t number = 0;
  const std::size_t faults = for_each_fault(
      faulty, fault,
      [&](std::size_t) {
        number = 0;
        try {
          refuse_work_beside_prepared_page(page);
        } catch (const failure& reason) {
          number = reason.number();
        }
      },
      [&](std::size_t operation) {
        EXPECT_NE(number, static_cast<std::int32_t>(FailureNumber::kFileAlreadyExists)) << operation;
      });
  EXPECT_GT(faults, 5u);
}

}  // namespace
}  // namespace kavo::test
