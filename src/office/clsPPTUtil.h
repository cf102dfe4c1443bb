// Turns a presentation into XML that can be translated, and the translated XML back into the presentation.
//
// Two macros of the template "kavo.ppt" in the program's folder do the work inside the presentation program
// ("PowerPoint.Application"); this class opens the presentation for them and waits (office_session.h). The presentation
// program stays open and visible until the object is destroyed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "office/office_session.h"

namespace kavo {

class clsPPTUtil {
 public:
  clsPPTUtil();

  // Each of the two names sets the other (common/document_names.h); whichever is set last wins. Throws `failure` 6 for
  // a name beyond what strParseFileName takes.
  const std::u16string& PPTFile() const { return ppt_file_; }
  void PPTFile(std::u16string_view value);
  const std::u16string& XMLFile() const { return xml_file_; }
  void XMLFile(std::u16string_view value);

  // 0, or 1 when a file is missing, the program cannot be reached or any call after the start of the macro fails. The
  // presentation is saved once before it is exported; importing fills the presentation that PPTFile names. Throws
  // `interruption` when the user interrupts.
  std::int32_t PPT2XML();
  std::int32_t XML2PPT();

  // Why the last conversion returned 1, if an error was the reason.
  const error_state& errors() const { return session_.errors(); }

 private:
  std::u16string ppt_file_;
  std::u16string xml_file_;
  OfficeSession session_;
};

}  // namespace kavo
