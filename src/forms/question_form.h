// A form that is confirmed or cancelled: Enter and OK confirm, Escape, Cancel and the title bar cancel.
#pragma once

#include "forms/form.h"

namespace kavo {

class QuestionForm : public Form {
 public:
  using Form::Form;
  // False after OK only.
  bool Cancelled() const { return cancelled_; }

 protected:
  // Makes these two buttons end the form. OK first calls `confirm`, if there is one.
  void ends_by(Button& ok, Button& cancel, std::function<void()> confirm = {});

 private:
  bool cancelled_ = true;
};

}  // namespace kavo
