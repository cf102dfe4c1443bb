#include "forms/control.h"

#include "forms/form.h"

namespace kavo {

Control::Control(Form& form, ControlKind kind, std::u16string_view name, const Place& place)
    : form_(form), kind_(kind), name_(name), place_(place) {
  form_.controls_.push_back(this);
}

Control::~Control() { std::erase(form_.controls_, this); }

void Control::Caption(std::u16string_view text) {
  if (caption_ == text) return;
  caption_ = text;
  shown_state_changed();
}

void Control::Visible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  shown_state_changed();
}

void Control::Enabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  shown_state_changed();
}

void Control::place(const Place& place) {
  if (place_ == place) return;
  place_ = place;
  shown_state_changed();
}

void Control::font(const ControlFont& font) {
  if (font_ == font) return;
  font_ = font;
  shown_state_changed();
}

void Control::SetFocus() {
  if (form_.view() != nullptr) form_.view()->focus(*this);
}

void Control::shown_state_changed() {
  if (form_.view() != nullptr) form_.view()->control_changed(*this);
}

}  // namespace kavo
