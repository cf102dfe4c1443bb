#include "ui/win32/window_presenter.h"

#include <memory>

#include "ui/win32/form_window.h"
#include "ui/win32/visual_styles.h"

namespace kavo {

void WindowPresenter::show(Form& form) {
  const VisualStyles styles;
  FormWindow(form, dpi_).run();
}

bool WindowPresenter::open(Form& form) {
  const VisualStyles styles;
  FormWindow::open(std::make_unique<FormWindow>(form, dpi_));
  return true;
}

}  // namespace kavo
