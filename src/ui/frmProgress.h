// Shown during a long run: the file, what is being done to it, how far that is, and a button to stop the run.
#pragma once

#include <cstdint>
#include <string_view>

#include "forms/form.h"
#include "resources/string_table.h"

namespace kavo {

class frmProgress final : public Form {
 public:
  frmProgress();
  // Hides the form. Clears a request to stop that came too late for this run, so that it does not end something else.
  ~frmProgress() override;
  // Percent of the whole run.
  void report(TextRow step, std::u16string_view file, int percent);
  // The user asked to stop, by the button or the title bar: the next time that the program processes messages it throws
  // `interruption`.
  bool Cancelled() const { return cancelled_; }

  Label lblFile;
  Label lblStep;
  Gauge prgDone;
  Button cmdCancel;

 private:
  bool cancelled_ = false;
};

}  // namespace kavo
