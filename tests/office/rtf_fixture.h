// Documents in memory for the RTF tests.
#pragma once

#include <string>
#include <string_view>

#include "office/clsRTFUtil.h"
#include "support/ports_fixture.h"

namespace kavo::test {

inline constexpr const char16_t* kDocument = u"C:\\WORK\\letter.rtf";
inline constexpr const char16_t* kObjects = u"C:\\WORK\\letter.obj";
// An object file that may be replaced: it holds no object.
inline constexpr std::string_view kNoObjects = "{\\v\\mor OBJ 1 }\r\n";

struct RtfOutcome {
  std::int32_t result = 0;
  std::string rtf;
  std::string objects;
  std::size_t files = 0;  // in the folder afterwards
  bool operator==(const RtfOutcome&) const = default;
};

inline void PrintTo(const RtfOutcome& outcome, std::ostream* stream) {
  *stream << "result " << outcome.result << ", " << outcome.files << " files\n"
          << outcome.rtf << "\n--\n"
          << outcome.objects;
}

class RtfFixture : public PortsFixture {
 protected:
  RtfOutcome outcome(std::int32_t result) {
    return {result, files.get(kDocument), files.has(kObjects) ? files.get(kObjects) : std::string(),
            files.all_files().size()};
  }

  RtfOutcome extract(std::string_view document) {
    files.put(kDocument, document);
    files.put(kObjects, kNoObjects);
    clsRTFUtil util;
    util.RTFFile(kDocument);
    return outcome(util.ExtractObjects());
  }

  RtfOutcome insert(std::string_view document, std::string_view objects) {
    files.put(kDocument, document);
    files.put(kObjects, objects);
    return insert();
  }

  // From what the last extraction left.
  RtfOutcome insert() {
    clsRTFUtil util;
    util.RTFFile(kDocument);
    return outcome(util.InsertObjects());
  }
};

}  // namespace kavo::test
