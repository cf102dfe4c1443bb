// The controls of a form as portable models: what they show, what a person can do with them, and what follows. A
// renderer draws them, and a test operates them directly. A value that the program sets raises the same event as one
// that a person sets, and only if it changes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class Form;

// Places and sizes are in twentieths of a dialog unit, so that a form grows with the font that it is drawn in.
inline constexpr std::int32_t kUnitsPerDialogUnit = 20;

struct Place {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  bool operator==(const Place&) const = default;
  std::int32_t right() const { return left + width; }
  std::int32_t bottom() const { return top + height; }
};

// The same in whole dialog units, in which a form's layout is written.
constexpr Place dialog_units(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
  return {left * kUnitsPerDialogUnit, top * kUnitsPerDialogUnit, width * kUnitsPerDialogUnit,
          height * kUnitsPerDialogUnit};
}

// The font of a control. An empty face and a size of 0 stand for the dialog font of the system.
struct ControlFont {
  std::u16string face;
  std::int32_t size = 0;           // in points
  std::int32_t character_set = 1;  // as in LOGFONT: 1 is the system's default, 2 the symbol set
  bool operator==(const ControlFont&) const = default;
};

enum class ControlKind { kLabel, kFrame, kTextBox, kButton, kCheckBox, kOptionButton, kListBox, kComboBox, kGauge };

class Control {
 public:
  // Adds the control to the form's list, whose order is the tab order. The form must outlive it. `name` is that of the
  // member, with its index where there are several: u"optOrder(0)".
  Control(Form& form, ControlKind kind, std::u16string_view name, const Place& place);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form() const { return form_; }
  ControlKind kind() const { return kind_; }
  const std::u16string& name() const { return name_; }

  // With "&" before the access key, "&&" for the character itself. Boxes and lists do not show a caption. A screen
  // reader reads it out; it is taken from the label before them unless it is set.
  const std::u16string& Caption() const { return caption_; }
  void Caption(std::u16string_view text);
  bool Visible() const { return visible_; }
  void Visible(bool visible);
  bool Enabled() const { return enabled_; }
  void Enabled(bool enabled);
  const Place& place() const { return place_; }
  void place(const Place& place);
  const ControlFont& font() const { return font_; }
  void font(const ControlFont& font);
  void SetFocus();

 protected:
  void shown_state_changed();  // informs the view, if there is one

 private:
  Form& form_;
  ControlKind kind_;
  std::u16string name_;
  std::u16string caption_;
  Place place_;
  ControlFont font_;
  bool visible_ = true;
  bool enabled_ = true;
};

}  // namespace kavo
