#include "workflow/set_update.h"

#include <gtest/gtest.h>

#include "common/document_names.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "suite/document/tud_format.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class SetUpdateTest : public PortsFixture {
 protected:
  SetUpdateTest() {
    files.put(document, "One");
    TudHeader header;
    header.original = "note.txt";
    header.source_language = "en-US";
    header.target_language = "fr";
    std::string xml;
    append_tud_start(xml, header);
    append_tud_end(xml);
    files.put(tud_name_of(document, u"FR"), xml);
  }

  bool finds_documents(bool replaces_others) {
    TranslatedFolders known(u"EN-US", u"FR", {u"C:\\WORK\\"});
    return SetUpdate(known, document, replaces_others).has_documents();
  }

  const std::u16string document = u"C:\\WORK\\note.txt";
};

TEST_F(SetUpdateTest, WhatCannotBeReadIsNotReplacedEvenWhenAsked) {
  ASSERT_TRUE(finds_documents(true));
  FaultyFiles faulty(files);
  ports().files = &faulty;
  FaultyFiles::Fault fault;
  fault.number = FailureNumber::kDeviceError;
  bool has_found = false, has_thrown = false;
  const std::size_t faults = for_each_fault(
      faulty, fault,
      [&](std::size_t) {
        has_found = has_thrown = false;
        try {
          has_found = finds_documents(true);
        } catch (const failure& reason) {
          has_thrown = reason.is(FailureNumber::kDeviceError);
        }
      },
      [&](std::size_t operation) { EXPECT_TRUE(has_found || has_thrown) << operation; });
  EXPECT_GT(faults, 3u);
}

}  // namespace
}  // namespace kavo::test
