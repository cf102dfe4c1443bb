// One stand-in Office program (standin/) for a test: registered for as long as this lives, started and ended.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "office/standin/programs.h"
#include "platform/win32/owners.h"
#include "support/temp_folder.h"

namespace kavo::test {

class OfficeStandIn {
 public:
  // Registers the stand-in as `identifier`. Nothing else of that name may be registered: see is_free().
  explicit OfficeStandIn(const wchar_t* identifier);
  // Ends the stand-in and takes the registration away.
  ~OfficeStandIn();
  OfficeStandIn(const OfficeStandIn&) = delete;
  OfficeStandIn& operator=(const OfficeStandIn&) = delete;

  // False where a real program of that name is installed: its registration is not touched.
  static bool is_free(const wchar_t* identifier);

  // Takes the program's identifier away, so that it can neither be found running nor started; files whose names end in
  // `extension` (".doc") are its own. False, and nothing is done, where such files have a program already.
  bool register_files_only(const wchar_t* extension);
  // Starts it as a program that the user has open; comes back when it serves.
  void start();
  // Waits until the program that was started (by start() or by the system) has ended; false when it goes on.
  bool has_ended();
  // Ends it without asking, and waits for that.
  void end();

  // A folder for the documents.
  const TempFolder& documents() const { return documents_; }
  // "key=value" lines (standin/programs.h); a new plan begins a new record.
  void plan(const std::vector<std::string>& lines);
  // The calls so far. The documents' folder stands there as "~", that of the test program as "<program>".
  std::vector<std::string> calls() const;
  std::string text() const;  // one a line

 private:
  std::wstring command_line(std::wstring_view role) const;
  void write_class(REFCLSID id, std::wstring_view role);

  const StandInProgram& program_;
  TempFolder exchange_;
  TempFolder documents_;
  std::vector<std::wstring> keys_;  // below the classes, in both hives
};

}  // namespace kavo::test
