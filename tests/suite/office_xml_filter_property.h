// What holds for any bytes on the way through the filter of presentations and workbooks; tests and the fuzzer share it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "suite/document/coded_text.h"
#include "suite/document/pseudo_translation.h"
#include "suite/filter_road.h"
#include "suite/filters/office/sheet_name.h"

namespace kavo::test {

// For any bytes: the first tells the size of the blocks, the rest is the XML. "" when it comes back unchanged byte for
// byte and translated with every text in its place; else what is broken.
inline std::string broken_office_xml_property(std::string_view input) {
  if (input.empty()) return {};
  const auto choice = static_cast<unsigned char>(input.front());
  const BlockSizeScope scope(choice == 0 ? 4096 : choice);
  const std::string_view xml = input.substr(1);
  FilterRoad road(u"K19XLSW", u".xml", kUtf8CodePage);
  std::vector<std::string> texts;
  try {
    texts = road.take_apart(xml);
  } catch (const failure& reason) {
    // Anything that is not this XML is refused.
    return reason.is(FailureNumber::kInvalidCall) ? "" : "the document was not read";
  }
  if (road.put_together({}) != xml) return "the unchanged document differs";
  const PseudoTranslation pseudo(kUtf8CodePage);
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
  const std::string translated = road.put_together(wanted);
  const std::vector<std::string> found = road.take_apart(translated);
  // The name of a sheet cannot hold every character, and has no codes.
  for (std::size_t i = 0; i < wanted.size() && i < found.size(); ++i)
    if (plain_text(found[i]) == office::valid_sheet_name(plain_text(wanted[i]))) wanted[i] = found[i];
  const std::string broken = broken_texts(wanted, found);
  return broken.empty() ? broken : broken + " in " + translated.substr(0, 4000);
}

}  // namespace kavo::test
