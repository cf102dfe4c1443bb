#include "forms/question_form.h"

#include <utility>

namespace kavo {

void QuestionForm::ends_by(Button& ok, Button& cancel, std::function<void()> confirm) {
  default_button = &ok;
  cancel_button = &cancel;
  ok.on_click = [this, confirm = std::move(confirm)] {
    if (confirm) confirm();
    cancelled_ = false;
    hide();
  };
  cancel.on_click = [this] {
    cancelled_ = true;
    hide();
  };
}

}  // namespace kavo
