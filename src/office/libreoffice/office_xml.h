// The XML in which the texts of a presentation or workbook are translated; docs/office-xml.md describes it.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/pending_file.h"
#include "office/excel_options.h"
#include "office/libreoffice/office_text.h"

namespace kavo {

class OfficeXmlWriter {
 public:
  // `kind` is "presentation" or "workbook"; `options` are those of the export, null when there are none. Throws
  // `failure`, as all operations do.
  OfficeXmlWriter(std::u16string_view path, std::string_view kind, const ExcelOptions* options);
  // `style` is that of the text's cell, "" for the usual one.
  void add_text(std::string_view place, std::span<const TextRun> runs, std::u16string_view style = {});
  // What people call a place, for information only.
  void add_name(std::string_view place, std::u16string_view name);
  // Formulas are for information only; they never come back.
  void add_formula(std::string_view place, std::u16string_view formula);
  // How many texts at a place the options left out.
  void add_left_out(std::string_view place, std::size_t count);
  void commit();

 private:
  PendingFile file_;
};

// A text that comes back from translation.
struct TranslatedText {
  std::string check;  // of the text that was exported
  // Kind and length of the exported runs; the texts themselves are not kept.
  struct Run {
    TextRun::Kind kind = TextRun::Kind::kText;
    std::size_t length = 0;
  };
  std::vector<Run> runs;
  std::vector<TextPiece> pieces;
};

struct TranslatedOfficeXml {
  std::string kind;
  ExcelOptions options;
  std::map<std::string, TranslatedText, std::less<>> texts;  // by place
};

// Throws `failure` 5 with file, line and column for anything that is not this XML.
TranslatedOfficeXml read_office_xml(std::u16string_view path);

}  // namespace kavo
