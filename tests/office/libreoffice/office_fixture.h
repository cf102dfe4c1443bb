// A test that drives LibreOffice itself, one for all tests of the program.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "office/libreoffice/office_document.h"
#include "office/libreoffice/office_engine.h"
#include "support/temp_folder.h"

namespace kavo::test {

class OfficeFixture : public testing::Test {
 protected:
  static void SetUpTestSuite() { register_office_engine(); }
  static void TearDownTestSuite() { end_office_engine(); }

  // Writes a document of ours, in LibreOffice's own XML, and turns it into an Office document of the name in `folder`.
  std::u16string make_document(std::u16string_view name, OfficeKind kind, std::string_view flat_xml,
                               std::string_view password = {});
  // An Office document as LibreOffice's own XML, without what differs from run to run.
  enum class Pictures { kLeftOut, kKept };
  std::string flat_xml_of(std::u16string_view path, OfficeKind kind, Pictures pictures = Pictures::kLeftOut);
  // Opens and saves, and nothing else.
  void open_and_save(std::u16string_view path, OfficeKind kind);

  TempFolder folder;
};

// Texts of the segments of a document's XML, in their order; inline codes are left out.
std::vector<std::string> segments_of(std::string_view xml);
// The XML with every letter of every segment's text moved by 13: every text changed, none longer.
std::string changed_segments(std::string_view xml);
// Each letter as the smaller one of itself and the one 13 after or before it: what only changed_segments() changed is
// equal again.
std::string without_change(std::string text);

}  // namespace kavo::test
