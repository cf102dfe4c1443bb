#include "ui/morLanguage.h"

#include "forms/locale_font.h"
#include "platform/trimmed.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::u16string_view kDefaultVariant = u"<Default>";

// In dialog units.
constexpr std::int32_t kLabelHeight = 8;
constexpr std::int32_t kLabelGap = 3;
constexpr std::int32_t kBoxHeight = 14;
constexpr std::int32_t kRelatedGap = 4;
constexpr std::int32_t kUnrelatedGap = 7;
constexpr std::int32_t kBottomPadding = 4;

std::u16string variant_text(std::u16string_view text) {
  const std::u16string_view variant = trimmed(text);
  return std::u16string(variant.empty() ? kDefaultVariant : variant);
}

bool is_letter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

// True when the description begins with the base name as a whole word. "French Canadian" belongs to "French";
// "Malayalam" does not belong to "Malay".
bool belongs_to(std::u16string_view description, std::u16string_view base) {
  if (base.empty() || !description.starts_with(base)) return false;
  return description.size() == base.size() || !is_letter(base.back()) || !is_letter(description[base.size()]);
}

// True for the variant that most people mean by the language: French of France, English of the U.S.A.
bool is_usual_variant(std::u16string_view code, std::u16string_view variant) {
  if (code.size() == 2 || code == u"EN-US" || variant == kDefaultVariant) return true;
  return code.size() > 3 && code.substr(3) == code.substr(0, 2);
}

std::u16string child_name(std::u16string_view part, std::u16string_view name) {
  return std::u16string(part) + u"." + std::u16string(name);
}

std::int32_t index_of_data(const ItemControl& list, std::int32_t data) {
  for (std::int32_t i = 0; i < list.ListCount(); ++i)
    if (list.ItemData(i) == data) return i;
  return -1;
}

}  // namespace

LanguageName split_language_name(std::u16string_view description) {
  const std::u16string_view name = trimmed(description);
  std::size_t separator = name.find(u'(');
  if (separator == std::u16string_view::npos) separator = name.find(u"--");
  if (separator == std::u16string_view::npos) return {std::u16string(name), std::u16string(kDefaultVariant)};
  return {std::u16string(trimmed(name.substr(0, separator))), variant_text(name.substr(separator))};
}

morLanguage::morLanguage(Form& form, std::u16string_view name, std::int32_t left, std::int32_t top, std::int32_t width,
                         const LanguagePickerDesign& design)
    : lblLanguage(form, child_name(name, u"lblLanguage"), {}),
      cmbLanguage(form, child_name(name, u"cmbLanguage"), {}),
      cmbVariant(form, child_name(name, u"cmbVariant"), {}),
      lblCharSet(form, child_name(name, u"lblCharSet"), {}),
      cmbEncoding(form, child_name(name, u"cmbEncoding"), {}),
      left_(left),
      top_(top),
      width_(width),
      show_char_set_(design.ShowCharSet),
      show_labels_(design.ShowLabels),
      enabled_(true) {
  for (Control* control :
       std::initializer_list<Control*>{&lblLanguage, &cmbLanguage, &cmbVariant, &lblCharSet, &cmbEncoding})
    set_locale_font(*control);
  cmbLanguage.on_click = [this] { base_chosen(); };
  cmbVariant.on_click = [this] { variant_chosen(); };
  cmbEncoding.on_click = [this] { encoding_chosen(); };
  fill();
  lblLanguage.Caption(text::kLanguage.text);
  cmbLanguage.Caption(text::kLanguage.text);
  cmbVariant.Caption(text::kLanguageVariant.text);
  lblCharSet.Caption(text::kCharacterSet.text);
  cmbEncoding.Caption(text::kCharacterSet.text);
  LanguageCode(design.LanguageCode);
  Enabled(design.Enabled);
  lay_out();
}

void morLanguage::fill() {
  for (std::int32_t i = 0; i <= languages_.CodePageCount(); ++i)
    cmbEncoding.AddItem(languages_.CodePageDescription(i), i);
  for (std::int32_t i = 0; i <= languages_.LanguageCount(); ++i) {
    const std::u16string base = split_language_name(languages_.LanguageDescription(i)).base;
    if (!base.empty() && cmbLanguage.find(base) < 0) cmbLanguage.AddItem(base);
  }
  if (cmbLanguage.ListCount() > 0) cmbLanguage.ListIndex(0);
}

void morLanguage::ShowCharSet(bool show) {
  show_char_set_ = show;
  lay_out();
}

void morLanguage::ShowLabels(bool show) {
  show_labels_ = show;
  lay_out();
}

void morLanguage::Visible(bool visible) {
  visible_ = visible;
  lay_out();
}

void morLanguage::Enabled(bool enabled) {
  enabled_ = enabled;
  lblLanguage.Enabled(enabled);
  cmbLanguage.Enabled(enabled);
  cmbVariant.Enabled(enabled);
  lblCharSet.Enabled(enabled);
  cmbEncoding.Enabled(enabled);
}

void morLanguage::LanguageCode(std::u16string_view code) {
  for (std::int32_t i = 0; i <= languages_.LanguageCount(); ++i) {
    if (languages_.LanguageCode(i) != code) continue;
    choose_base(cmbLanguage.find(split_language_name(languages_.LanguageDescription(i)).base));
    cmbVariant.ListIndex(index_of_data(cmbVariant, i));
    return;
  }
}

void morLanguage::CharSetNumber(std::int32_t number) {
  for (std::int32_t i = 0; i < cmbEncoding.ListCount(); ++i) {
    if (languages_.CodePageNumber(cmbEncoding.ItemData(i)) != number) continue;
    cmbEncoding.ListIndex(i);
    return;
  }
}

// Also fills the list of variants anew when the language is selected already, which raises no event.
void morLanguage::choose_base(std::int32_t index) {
  if (cmbLanguage.ListIndex() == index)
    base_chosen();
  else
    cmbLanguage.ListIndex(index);
}

void morLanguage::base_chosen() {
  cmbVariant.Clear();
  const std::u16string base = cmbLanguage.Text();
  for (std::int32_t i = 0; i <= languages_.LanguageCount(); ++i) {
    const std::u16string description = languages_.LanguageDescription(i);
    if (!belongs_to(description, base)) continue;
    const std::u16string variant = variant_text(std::u16string_view(description).substr(base.size()));
    cmbVariant.AddItem(variant, i);
    // If several variants are usual, the last one stays selected.
    if (is_usual_variant(languages_.LanguageCode(i), variant)) cmbVariant.ListIndex(cmbVariant.ListCount() - 1);
  }
  if (cmbVariant.ListIndex() < 0) cmbVariant.ListIndex(0);
}

void morLanguage::variant_chosen() {
  current_language_ = cmbVariant.ItemData(cmbVariant.ListIndex());
  // A default code page that is not listed leaves the selection as it is.
  const std::int32_t encoding = index_of_data(cmbEncoding, languages_.LanguageCodePage(current_language_));
  if (encoding >= 0) cmbEncoding.ListIndex(encoding);
  if (LanguageChange) LanguageChange();
}

void morLanguage::encoding_chosen() {
  current_code_page_ = cmbEncoding.ItemData(cmbEncoding.ListIndex());
  if (CharSetChange) CharSetChange();
}

void morLanguage::lay_out() {
  std::int32_t top = top_;
  const auto put = [&](Control& control, bool shown, std::int32_t height, std::int32_t gap) {
    control.Visible(visible_ && shown);
    if (!shown) return;
    control.place({left_, top, width_, height * kUnitsPerDialogUnit});
    bottom_ = control.place().bottom();
    top = bottom_ + gap * kUnitsPerDialogUnit;
  };
  put(lblLanguage, show_labels_, kLabelHeight, kLabelGap);
  put(cmbLanguage, true, kBoxHeight, kRelatedGap);
  put(cmbVariant, true, kBoxHeight, kUnrelatedGap);
  put(lblCharSet, show_char_set_ && show_labels_, kLabelHeight, kLabelGap);
  put(cmbEncoding, show_char_set_, kBoxHeight, 0);
  bottom_ += kBottomPadding * kUnitsPerDialogUnit;
}

}  // namespace kavo
