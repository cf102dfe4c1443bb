#include "ui/system_presenter.h"

#include "ui/win32/window_presenter.h"

namespace kavo {

FormPresenter& system_presenter() {
  static WindowPresenter presenter;
  return presenter;
}

}  // namespace kavo
