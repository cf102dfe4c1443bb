// The Office programs that the command drives: on Windows those that are registered there, natively the engine that
// lies beside the command as a library of its own, so that the command runs without LibreOffice.
#pragma once

namespace kavo {

class OfficePrograms {
 public:
  // Makes their identifiers known to the automation port. Nothing is loaded or started before one of them is created;
  // where that cannot be, creating throws `failure` 429 that says what to install.
  OfficePrograms();
  // Ends what was started.
  ~OfficePrograms();
  OfficePrograms(const OfficePrograms&) = delete;
  OfficePrograms& operator=(const OfficePrograms&) = delete;
};

}  // namespace kavo
