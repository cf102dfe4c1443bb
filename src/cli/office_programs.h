// The Office programs that the command drives: on Windows the registered ones, elsewhere an engine in a library beside
// the command. So the command itself runs without LibreOffice.
#pragma once

namespace kavo {

class OfficePrograms {
 public:
  // Makes their identifiers known to the automation port. Nothing is loaded or started before one of them is created.
  // If a program is missing, creating it throws `failure` 429, which says what to install.
  OfficePrograms();
  // Ends the programs that were started.
  ~OfficePrograms();  // NOLINT(performance-trivially-destructible): does nothing on Windows, but not natively
  OfficePrograms(const OfficePrograms&) = delete;
  OfficePrograms& operator=(const OfficePrograms&) = delete;
};

}  // namespace kavo
