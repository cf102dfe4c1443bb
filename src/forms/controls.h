// The kinds of controls.
#pragma once

#include "common/form_frame.h"
#include "forms/control.h"

namespace kavo {

class Label final : public Control {
 public:
  Label(Form& form, std::u16string_view name, const Place& place) : Control(form, ControlKind::kLabel, name, place) {}
};

// A box with a caption around other controls. It does not own them: they are placed on the form.
class Frame final : public Control {
 public:
  Frame(Form& form, std::u16string_view name, const Place& place) : Control(form, ControlKind::kFrame, name, place) {}
};

class Button final : public Control {
 public:
  Button(Form& form, std::u16string_view name, const Place& place) : Control(form, ControlKind::kButton, name, place) {}

  std::function<void()> on_click;
  // Does what a person's click does. Nothing happens when the button is disabled or hidden.
  void Click();
};

class TextBox final : public Control, public TextBoxFrame {
 public:
  TextBox(Form& form, std::u16string_view name, const Place& place)
      : Control(form, ControlKind::kTextBox, name, place) {}

  std::function<void()> on_change;
  const std::u16string& Text() const { return text_; }
  void Text(std::u16string_view text);
  // A locked box shows its text and lets people copy it, but not change it.
  bool Locked() const { return locked_; }
  void Locked(bool locked);
  // The text is a file's path, in the core's form; a terminal takes and shows it as the system writes paths.
  bool holds_path = false;

  std::int32_t text_length() const override { return static_cast<std::int32_t>(text_.size()); }
  void select(std::int32_t start, std::int32_t length) override;

 private:
  std::u16string text_;
  bool locked_ = false;
};

class CheckBox final : public Control {
 public:
  CheckBox(Form& form, std::u16string_view name, const Place& place)
      : Control(form, ControlKind::kCheckBox, name, place) {}

  std::function<void()> on_click;  // the value changed
  bool Value() const { return value_; }
  void Value(bool value);

 private:
  bool value_ = false;
};

// At most one option button of a group is selected. Selecting one deselects the others.
class OptionButton final : public Control {
 public:
  OptionButton(Form& form, std::u16string_view name, const Place& place, const Frame& group)
      : Control(form, ControlKind::kOptionButton, name, place), group_(group) {}

  std::function<void()> on_click;  // it was selected
  const Frame& group() const { return group_; }
  bool Value() const { return value_; }
  void Value(bool value);

 private:
  const Frame& group_;
  bool value_ = false;
};

struct ListItem {
  std::u16string text;
  std::int32_t data = 0;  // what the program keeps with the item
  bool operator==(const ListItem&) const = default;
};

// The items of a list box or combo box. An index outside the list selects nothing (-1) or reads as "" and 0.
class ItemControl : public Control {
 public:
  std::function<void()> on_click;  // the selected item changed to another one
  std::int32_t ListCount() const { return static_cast<std::int32_t>(items_.size()); }
  std::u16string List(std::int32_t index) const;
  std::int32_t ItemData(std::int32_t index) const;
  void ItemData(std::int32_t index, std::int32_t data);
  const std::vector<ListItem>& items() const { return items_; }
  void AddItem(std::u16string_view text, std::int32_t data = 0);
  // Removes one item; when it was selected, nothing is selected afterwards. Raises no event.
  void RemoveItem(std::int32_t index);
  void Clear();  // raises no event
  std::int32_t ListIndex() const { return index_; }
  void ListIndex(std::int32_t index);
  std::u16string Text() const { return List(index_); }  // of the selected item
  // The first item with exactly this text, -1 when there is none.
  std::int32_t find(std::u16string_view text) const;

 protected:
  using Control::Control;

 private:
  std::vector<ListItem> items_;
  std::int32_t index_ = -1;
};

class ListBox final : public ItemControl {
 public:
  ListBox(Form& form, std::u16string_view name, const Place& place)
      : ItemControl(form, ControlKind::kListBox, name, place) {}
};

// A drop-down list: one of its items and nothing else. `place` is that of the closed box.
class ComboBox final : public ItemControl {
 public:
  ComboBox(Form& form, std::u16string_view name, const Place& place)
      : ItemControl(form, ControlKind::kComboBox, name, place) {}
};

// A bar that fills as work is done. People cannot operate it.
class Gauge final : public Control {
 public:
  Gauge(Form& form, std::u16string_view name, const Place& place) : Control(form, ControlKind::kGauge, name, place) {}

  std::int32_t Value() const { return value_; }  // percent, 0 to 100
  void Value(std::int32_t percent);

 private:
  std::int32_t value_ = 0;
};

}  // namespace kavo
