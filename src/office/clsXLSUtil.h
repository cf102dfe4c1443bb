// Turns a workbook into XML that can be translated, and the translated XML back into the workbook.
//
// Two macros of the template "kavo.xls" in the program's folder do the work inside the spreadsheet program
// ("Excel.Application"); this class opens the workbook for them and waits (office_session.h). excel_options.h says what
// the export includes. Macros of the workbook itself cannot run while it is opened.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "office/office_session.h"

namespace kavo {

class clsXLSUtil {
 public:
  clsXLSUtil();

  // Each of the two names sets the other (common/document_names.h); whichever is set last wins. Throws `failure` 6 for
  // a name beyond what strParseFileName takes.
  const std::u16string& XLSFile() const { return xls_file_; }
  void XLSFile(std::u16string_view value);
  const std::u16string& XMLFile() const { return xml_file_; }
  void XMLFile(std::u16string_view value);

  // 0, or 1 when a file is missing, the program cannot be reached or any call after the start of the macro fails. The
  // workbook is saved once before it is exported; importing fills the workbook that XLSFile names. Throws
  // `interruption` when the user interrupts.
  std::int32_t XLS2XML();
  std::int32_t XML2XLS();

  // Shows the options dialog modally; OK stores what it shows.
  void DisplayOptions();

  // Why the last conversion returned 1, if an error was the reason.
  const error_state& errors() const { return session_.errors(); }

 private:
  std::u16string xls_file_;
  std::u16string xml_file_;
  OfficeSession session_;
};

}  // namespace kavo
