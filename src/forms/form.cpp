#include "forms/form.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kavo {
namespace {

thread_local FormPresenter* presenter_in_use = nullptr;

}  // namespace

Form::Form(std::u16string name) : FormFrame(std::move(name)) {}
Form::~Form() = default;

void Form::Caption(std::u16string_view text) {
  caption_ = text;
  if (view_ != nullptr) view_->form_changed();
}

void Form::size(std::int32_t width, std::int32_t height) {
  size_ = {0, 0, width, height};
  if (view_ != nullptr) view_->form_changed();
}

Control* Form::find_control(std::u16string_view name) const {
  const auto found = std::ranges::find_if(controls_, [&](const Control* control) { return control->name() == name; });
  return found == controls_.end() ? nullptr : *found;
}

void Form::tab_order(std::initializer_list<Control*> controls) {
  const auto stays_behind = [&](const Control* control) {
    return std::ranges::find(controls, control) == controls.end();
  };
  std::vector<Control*> order(controls);
  std::ranges::copy_if(controls_, std::back_inserter(order), stays_behind);
  controls_ = std::move(order);
}

void Form::show() {
  shown_ = true;
  if (presenter_in_use == nullptr) return close_box();
  // When the presenter fails, the form is hidden, too.
  struct Hidden {
    bool& shown;
    ~Hidden() { shown = false; }
  } hidden{shown_};
  presenter_in_use->show(*this);
}

void Form::show_beside() { shown_ = presenter_in_use != nullptr && presenter_in_use->open(*this); }

void Form::hide() {
  shown_ = false;
  if (view_ != nullptr) view_->close();
}

void Form::close_box() {
  if (cancel_button != nullptr) cancel_button->Click();
  if (shown_) hide();
}

Extent Form::extent() const { return view_ != nullptr ? view_->extent() : Extent(); }
Extent Form::screen_extent() const { return view_ != nullptr ? view_->screen_extent() : Extent(); }

void Form::move(std::int32_t left, std::int32_t top) {
  if (view_ != nullptr) view_->move(left, top);
}

FormPresenter* form_presenter() { return presenter_in_use; }
void form_presenter(FormPresenter* presenter) { presenter_in_use = presenter; }

}  // namespace kavo
