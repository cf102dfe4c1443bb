// Shows forms as questions, line by line. This works over a remote shell, in a pipe, and with a screen reader.
//
// The questions follow the tab order. An empty line goes on to the next question; at the default button it presses the
// button. The end of the input counts as Cancel. Changes of a control need no redrawing: each question shows its state.
#pragma once

#include <ostream>

#include "forms/form.h"
#include "ui/terminal/terminal_input.h"

namespace kavo {

class TerminalPresenter final : public FormPresenter {
 public:
  // `input` is an open file descriptor; neither is owned.
  TerminalPresenter(int input, std::ostream& output) : input_(input), output_(output) {}
  // File dialogs of the form's handlers are asked in the terminal, too. Throws what a handler throws, and
  // `interruption` when the user interrupts.
  void show(Form& form) override;

 private:
  TerminalInput input_;
  std::ostream& output_;
};

}  // namespace kavo
