// The stand-in as an automation server: the running program behind all of its objects.
#pragma once

#include <filesystem>
#include <string>

#include "office/standin/document.h"
#include "office/standin/programs.h"
#include "office/standin/record.h"
#include "platform/win32/owners.h"

namespace kavo::test {

class Program {
 public:
  Program(const StandInProgram& kind, std::filesystem::path folder);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  const StandInProgram& kind() const { return kind_; }
  const Record& record() const { return record_; }

  // Makes the program's object known to others as the active one; nothing when it is already.
  void become_active();
  // No longer active; the process ends once nobody holds an object of it.
  void quit();
  void object_made() { ++objects_; }
  void object_gone();

  // The document that is open; its path is "" when there is none.
  StandInDocument& document() { return document_; }
  // Starts a macro, which does its work a little later and then deletes the flag file: a caller who does not wait finds
  // nothing done. False when no document is open that has an empty flag file.
  bool run_macro(std::wstring_view name);
  void finish_macro();

 private:
  const StandInProgram& kind_;
  Record record_;
  DWORD thread_ = GetCurrentThreadId();
  DWORD active_ = 0;  // its number in the running object table, 0 when it is not there
  long objects_ = 0;
  bool quitting_ = false;
  StandInDocument document_;
  bool exports_ = false;  // the macro that runs
};

}  // namespace kavo::test
