#pragma once

#include <cstdint>
#include <string>

namespace kavo {

// A file that the suite's filters are to process.
struct ProducedFile {
  std::u16string file_name;    // full path
  std::int32_t file_type = 0;  // file type code (common/file_type.h); selects the filter
  std::u16string tud_name;     // the bilingual document that the filter run wrote, "" before
  std::string author_lines{};  // where its lines stand in the author's file (LineMap); "" when that is the file itself
  // The scratch file into which an Office program has converted the document, for the first language of the run. The
  // other languages read it, too. "" for other documents and before the conversion.
  std::u16string form{};
};

}  // namespace kavo
