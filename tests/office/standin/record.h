// What the stand-in writes down, and what it was told to do.
//
//   start                                             the class object made the program's object
//   load "C:\WORK\a.doc"                              the object of a file was asked for
//   Application.Visible = BOOL true                   a property set
//   Documents.Open(BSTR& "C:\WORK\a.doc", BOOL false)  a call or a property read; "&" marks an argument by reference
//   quit message                                      the main window was told to quit
//
// The count of calls is the count of the file's lines: the test begins anew by deleting the file.
#pragma once

#include <windows.h>
// windows.h first.
#include <oaidl.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace kavo::test {

class Record {
 public:
  explicit Record(std::filesystem::path folder) : folder_(std::move(folder)) {}

  const std::filesystem::path& folder() const { return folder_; }
  // Adds a line (UTF-8). Answers whether this call shall fail; does not come back when the program shall die in it.
  bool add(const std::string& line) const;
  // A value of the plan, `missing` when it has none.
  std::string planned(std::string_view key, std::string_view missing) const;

 private:
  std::filesystem::path folder_;
};

// One argument with its exact type.
std::string text_of(const VARIANT& argument);
// All arguments in the caller's order, in brackets; a property's new value is not among them.
std::string text_of(const DISPPARAMS& arguments);

}  // namespace kavo::test
