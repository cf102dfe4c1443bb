// File types, one row each: everything that the driver, the wizard, the command and the documents know about a type is
// here. docs/adding-a-file-type.md lists what else a new type needs.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kavo {

// The numbers are part of the contract.
enum FileType : std::int32_t {
  kUnknownFile = 0,
  kWordDocument = 1,
  kRtfDocument = 2,
  kHtmlPage = 3,
  kServerPage = 4,
  kMifDocument = 5,
  kResourceScript = 6,
  kPlainText = 7,  // also the script side file
  kPresentation = 8,
  kWorkbook = 9,
};

// What is done with a document before the suite's filter sees it.
enum class Preparation {
  kNone,
  kScripts,      // scripts go into a side file, tags are repaired
  kHiddenTexts,  // hidden texts go into three side files
};

// What rebuilding a document does besides the filter's part, and which files it needs for that.
enum class WayBack {
  kNone,
  kScripts,      // scripts come back: the bilingual document of the script file
  kHiddenTexts,  // hidden texts come back: those of the three side files
  kObjects,      // pictures and objects come back from the object file, when there is one
  kOfficeFile,   // the texts go into a copy of the file that they come from
};

// What a filter reads instead of a document that only an Office program can read (interchange/).
enum class TranslatedForm {
  kItself,
  kRtf,
  kXml,  // docs/office-xml.md
};

struct FileTypeRow {
  FileType code;
  std::string_view label;                           // as the command shows it
  std::span<const std::u16string_view> extensions;  // in capitals
  std::u16string_view filter_tag;  // part of the name of a filter that takes it; "" when no filter does
  Preparation preparation;
  WayBack way_back;
  TranslatedForm form = TranslatedForm::kItself;
};

// The rows in the order of their codes, the unknown type first.
std::span<const FileTypeRow> file_types();

// The row with this code, or the row of the unknown type.
const FileTypeRow& file_type_row(std::int32_t code);

// The code for the last extension of a file name, ASCII case ignored; 0 for an unknown extension or none. Never fails.
std::int32_t FileTypeOf(std::u16string_view file_name);

}  // namespace kavo
