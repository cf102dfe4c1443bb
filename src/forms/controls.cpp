#include "forms/controls.h"

#include <algorithm>

#include "forms/form.h"

namespace kavo {
namespace {

void raise(const std::function<void()>& event) {
  if (event) event();
}

}  // namespace

void Button::Click() {
  if (Enabled() && Visible()) raise(on_click);
}

void TextBox::Text(std::u16string_view text) {
  if (text_ == text) return;
  text_ = text;
  shown_state_changed();
  raise(on_change);
}

void TextBox::Locked(bool locked) {
  if (locked_ == locked) return;
  locked_ = locked;
  shown_state_changed();
}

void TextBox::select(std::int32_t start, std::int32_t length) {
  if (form().view() != nullptr) form().view()->select_text(*this, start, length);
}

void CheckBox::Value(bool value) {
  if (value_ == value) return;
  value_ = value;
  shown_state_changed();
  raise(on_click);
}

void OptionButton::Value(bool value) {
  if (value_ == value) return;
  value_ = value;
  shown_state_changed();
  if (!value_) return;
  for (Control* control : form().controls()) {
    if (control == this || control->kind() != ControlKind::kOptionButton) continue;
    auto& other = static_cast<OptionButton&>(*control);
    if (&other.group() == &group_) other.Value(false);
  }
  raise(on_click);
}

std::u16string ItemControl::List(std::int32_t index) const {
  return index >= 0 && index < ListCount() ? items_[static_cast<std::size_t>(index)].text : std::u16string();
}

std::int32_t ItemControl::ItemData(std::int32_t index) const {
  return index >= 0 && index < ListCount() ? items_[static_cast<std::size_t>(index)].data : 0;
}

void ItemControl::ItemData(std::int32_t index, std::int32_t data) {
  if (index >= 0 && index < ListCount()) items_[static_cast<std::size_t>(index)].data = data;
}

void ItemControl::AddItem(std::u16string_view text, std::int32_t data) {
  items_.push_back({std::u16string(text), data});
  shown_state_changed();
}

void ItemControl::RemoveItem(std::int32_t index) {
  if (index < 0 || index >= ListCount()) return;
  items_.erase(items_.begin() + index);
  if (index == index_) index_ = -1;
  if (index < index_) --index_;
  shown_state_changed();
}

void ItemControl::Clear() {
  items_.clear();
  index_ = -1;
  shown_state_changed();
}

void ItemControl::ListIndex(std::int32_t index) {
  if (index < 0 || index >= ListCount()) index = -1;
  if (index_ == index) return;
  index_ = index;
  shown_state_changed();
  if (index_ >= 0) raise(on_click);
}

std::int32_t ItemControl::find(std::u16string_view text) const {
  const auto found = std::ranges::find(items_, text, &ListItem::text);
  return found == items_.end() ? -1 : static_cast<std::int32_t>(found - items_.begin());
}

void Gauge::Value(std::int32_t percent) {
  if (value_ == percent) return;
  value_ = percent;
  shown_state_changed();
}

}  // namespace kavo
