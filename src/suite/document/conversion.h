// The suite's two conversions: from a document to a bilingual document with its skeleton, and from an OpenTag file with
// the skeleton to the target.
#pragma once

#include <cstdint>
#include <string>

#include "common/progress_event.h"
#include "suite/filters/filter.h"
#include "suite/document/script_settings.h"

namespace kavo {

struct ConversionRequest {
  std::u16string document;
  std::u16string tud;
  std::u16string skeleton;         // "" for the default name beside the bilingual document
  std::u16string source_language;  // the suite's codes
  std::u16string target_language;
  unsigned source_code_page = 0;     // 0: the system's
  unsigned target_code_page = 0;     // 0: that of the document
  std::u16string filter;             // a name that contains the filter's tag
  std::string mark{};                // the mark of the preparation, a short word; "" for none
  std::u16string author_document{};  // full path of the author's document; "" when unknown
  FilterOptions options{};
  MessageTaker tell{};
  ScriptSettings scripts{};          // which texts of script files are offered
};

// Writes the bilingual document and the skeleton and returns the number of segments. Throws `failure` (5 for names that
// are not plain file names on every system, because the document could not be opened again). Both files are then as
// they were before.
std::uint32_t convert_document(const ConversionRequest& request, ProgressEvent& progress);

struct TargetRequest {
  std::u16string target;
  std::u16string open_tag;
  std::u16string skeleton;
  std::u16string language;  // "" for that of the OpenTag file
  std::u16string filter;    // must be the skeleton's filter; "" accepts any
  MessageTaker tell{};
};

// Writes the target, replacing a file with its name. Throws `failure` with a description for people; that file is then
// as it was.
void create_target(const TargetRequest& request, ProgressEvent& progress);

}  // namespace kavo
