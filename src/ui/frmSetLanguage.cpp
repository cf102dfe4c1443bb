#include "ui/frmSetLanguage.h"

#include "common/program_settings.h"
#include "platform/failure.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::u16string_view kShowCharset = u"ShowCharset";

// In the units of Place.
constexpr std::int32_t kMargin = 7 * kUnitsPerDialogUnit;
constexpr std::int32_t kPickerWidth = 142 * kUnitsPerDialogUnit;
constexpr std::int32_t kButtonGap = 60;  // under the picker

constexpr Place kToggle = dialog_units(153, 18, 50, 14);
constexpr Place kOk = dialog_units(99, 0, 50, 14);
constexpr Place kCancel = dialog_units(153, 0, 50, 14);

Place at_top(Place place, std::int32_t top) {
  place.top = top;
  return place;
}

}  // namespace

frmSetLanguage::frmSetLanguage()
    : QuestionForm(u"frmSetLanguage"),
      morLang(*this, u"morLang", kMargin, kMargin, kPickerWidth),
      cmdToggle(*this, u"cmdToggle", kToggle),
      cmdOK(*this, u"cmdOK", kOk),
      cmdCancel(*this, u"cmdCancel", kCancel) {
  Caption(text::kSetLanguage.text);
  cmdOK.Caption(text::kSetLanguageOK.text);
  cmdCancel.Caption(text::kSetLanguageCancel.text);
  cmdToggle.on_click = [this] { show_char_set(!morLang.ShowCharSet()); };
  ends_by(cmdOK, cmdCancel);
  show_char_set(kLanguageDialogSettings.get(kShowCharset, u"N") != u"N");
}

frmSetLanguage::~frmSetLanguage() {
  try {
    kLanguageDialogSettings.save(kShowCharset, morLang.ShowCharSet() ? u"Y" : u"N");
  } catch (const std::exception&) {
    // The user only loses a convenience, and a destructor cannot report it.
  }
}

void frmSetLanguage::show_char_set(bool show) {
  morLang.ShowCharSet(show);
  cmdToggle.Caption((show ? text::kLess : text::kMore).text);
  const std::int32_t top = morLang.bottom() + kButtonGap;
  cmdOK.place(at_top(kOk, top));
  cmdCancel.place(at_top(kCancel, top));
  size(kCancel.right() + kMargin, cmdCancel.place().bottom() + kMargin);
}

}  // namespace kavo
