// What is shown beside a long run: the file, how far it is, and a button to stop it.
#pragma once

#include <string_view>

#include "forms/form.h"

namespace kavo {

class frmProgress final : public Form {
 public:
  frmProgress();
  // Hides it. A wish to stop that came too late to be noticed is taken back, so that it ends nothing else.
  ~frmProgress() override;
  // Percent of the file's preparation.
  void report(std::u16string_view file, int percent);
  // The user asked to stop, by the button or the title bar: the next time the program processes messages it is
  // interrupted (failure 18).
  bool Cancelled() const { return cancelled_; }

  Label lblFile;
  Label lblPercent;
  Button cmdCancel;

 private:
  bool cancelled_ = false;
};

}  // namespace kavo
