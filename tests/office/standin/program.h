// The stand-in as an automation server: the running program behind all of its objects.
#pragma once

#include <filesystem>
#include <string>

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

  // The document that is open, "" for none.
  void opened(std::filesystem::path document) { document_ = std::move(document); }
  void closed() { document_.clear(); }
  const std::filesystem::path& document() const { return document_; }
  // Starts a macro, which ends a little later by deleting the flag file. False when no document is open that has an
  // empty one.
  bool run_macro(std::wstring_view name);
  void finish_macro();

 private:
  const StandInProgram& kind_;
  Record record_;
  DWORD thread_ = GetCurrentThreadId();
  DWORD active_ = 0;  // its number in the running object table, 0 when it is not there
  long objects_ = 0;
  bool quitting_ = false;
  std::filesystem::path document_;
};

}  // namespace kavo::test
