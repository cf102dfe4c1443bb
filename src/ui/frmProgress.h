// What is shown beside a long run: the file, what is done to it and how far, and a button to stop it.
#pragma once

#include <cstdint>
#include <string_view>

#include "forms/form.h"
#include "resources/string_table.h"

namespace kavo {

class frmProgress final : public Form {
 public:
  frmProgress();
  // Hides it. A wish to stop that came too late to be noticed is taken back, so that it ends nothing else.
  ~frmProgress() override;
  // Percent of the whole run.
  void report(TextRow step, std::u16string_view file, int percent);
  // The user asked to stop, by the button or the title bar: the next time the program processes messages it is
  // interrupted (failure 18).
  bool Cancelled() const { return cancelled_; }

  Label lblFile;
  Label lblStep;
  Gauge prgDone;
  Button cmdCancel;

 private:
  bool cancelled_ = false;
};

}  // namespace kavo
