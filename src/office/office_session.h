// One presentation or spreadsheet program, reached when it is first needed and kept until the session ends, with the
// template document open that holds the conversion macros.
//
// The program runs beside us: a macro is started by name and deletes an empty flag file when it has finished. Waiting
// for that has no time-out, by design of the handshake; it ends when the user interrupts.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "common/error_state.h"
#include "platform/automation.h"

namespace kavo {

// How the two programs differ.
struct OfficeProgram {
  std::u16string_view identifier;     // "PowerPoint.Application"
  std::u16string_view collection;     // "Presentations", whose Open opens a document
  std::u16string_view window_class;   // of the main window of release 97 ("8"), which is quit by a message to it
  std::u16string_view template_name;  // of the document with the macros, in this program's folder
  bool open_takes_update_links;       // Open(FileName, UpdateLinks, ReadOnly) instead of Open(FileName, ReadOnly)
  bool quit_asks;                     // whether Quit asks about changes unless alerts are off
};

class OfficeSession {
 public:
  // Nothing is started yet. `program` must outlive the session.
  explicit OfficeSession(const OfficeProgram& program) : program_(program) {}
  // Closes the template, and the program when the session started it; never throws.
  ~OfficeSession();
  OfficeSession(const OfficeSession&) = delete;
  OfficeSession& operator=(const OfficeSession&) = delete;

  // Starts the session if necessary. False when the program cannot be reached. Throws `failure` when the folder of this
  // program cannot be found.
  bool reach();
  const ObjectRef& application() const { return application_; }
  // Keeps the last error of every step until it is cleared.
  error_state& errors() { return errors_; }
  const error_state& errors() const { return errors_; }

  // Each is one trapped step. open() returns null when it failed.
  ObjectRef open(std::initializer_list<Argument> arguments);
  void put(const ObjectRef& object, std::u16string_view member, const Value& value);
  void call(const ObjectRef& object, std::u16string_view member);

  // open() with the arguments that this program's Open takes.
  ObjectRef open_file(Argument file_name, bool read_only);

  // Makes the flag file, runs the macro and waits until the flag file is gone. A macro that could not be run, or has no
  // document because that could not be opened, will never delete the flag file: it is deleted here without waiting.
  // When the user interrupts, deletes the flag file, closes `document` unsaved and throws `interruption`.
  void run_macro(std::u16string_view macro, const std::u16string& flag_file, const ObjectRef& document);

 private:
  void start_up();
  void show();
  void open_template(const std::u16string& template_file);
  void find_main_window();
  void shut_down();
  void run_and_wait(std::u16string_view macro, const std::u16string& flag_file, bool is_open);

  const OfficeProgram& program_;
  ObjectRef application_;
  ObjectRef template_;
  error_state errors_;
  std::uintptr_t main_window_ = 0;
  bool initialised_ = false;
  bool started_by_us_ = false;
};

}  // namespace kavo
