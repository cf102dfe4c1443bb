// Picks a language in two steps, the language and its regional variant, and the character set it is written in.
//
// It is part of a form: its boxes are controls of the form, named after the part and themselves
// ("morLang.cmbLanguage"). Filled from clsLanguages once, when it is made.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "forms/form.h"
#include "ui/clsLanguages.h"

namespace kavo {

// What a form's design says about its picker.
struct LanguagePickerDesign {
  bool ShowCharSet = true;
  bool ShowLabels = true;
  bool Enabled = true;
  std::u16string LanguageCode = u"EN-US";
};

class morLanguage {
 public:
  // `left`, `top` and `width` as in Place; the height follows from what is shown.
  morLanguage(Form& form, std::u16string_view name, std::int32_t left, std::int32_t top, std::int32_t width,
              const LanguagePickerDesign& design = {});
  morLanguage(const morLanguage&) = delete;
  morLanguage& operator=(const morLanguage&) = delete;

  std::function<void()> LanguageChange;  // a variant was chosen and its default character set was applied
  std::function<void()> CharSetChange;   // another character set is selected

  bool ShowCharSet() const { return show_char_set_; }
  void ShowCharSet(bool show);
  bool ShowLabels() const { return show_labels_; }
  void ShowLabels(bool show);
  bool Enabled() const { return enabled_; }
  void Enabled(bool enabled);
  // A picker that is not visible still holds its choice.
  bool Visible() const { return visible_; }
  void Visible(bool visible);

  // The suite's code of the language chosen, "" when there is none. Writing chooses the language with exactly this
  // code, with its default character set; a code that is not there changes nothing.
  std::u16string LanguageCode() const { return languages_.LanguageCode(current_language_); }
  void LanguageCode(std::u16string_view code);
  std::u16string LanguageDescription() const { return languages_.LanguageDescription(current_language_); }
  // Number of the code page chosen, 0 when there is none. A number that is not there changes nothing.
  std::int32_t CharSetNumber() const { return languages_.CodePageNumber(current_code_page_); }
  void CharSetNumber(std::int32_t number);
  std::u16string CharSetCode() const { return languages_.CodePageCode(current_code_page_); }
  std::u16string CharSetDescription() const { return languages_.CodePageDescription(current_code_page_); }

  // Where it ends, in the units of Place.
  std::int32_t bottom() const { return bottom_; }

  Label lblLanguage;
  ComboBox cmbLanguage, cmbVariant;
  Label lblCharSet;
  ComboBox cmbEncoding;

 private:
  void fill();
  void choose_base(std::int32_t index);
  void base_chosen();
  void variant_chosen();
  void encoding_chosen();
  void lay_out();

  clsLanguages languages_;
  std::int32_t left_, top_, width_;
  std::int32_t bottom_ = 0;
  std::int32_t current_language_ = -1;   // index in languages_
  std::int32_t current_code_page_ = -1;  // likewise
  bool show_char_set_, show_labels_, enabled_;
  bool visible_ = true;
};

// A description in two: "English (U.K.)" is base "English" and variant "(U.K.)". The variant begins at the first "(",
// without one at the first "--"; a description that has neither is a base with the variant "<Default>".
struct LanguageName {
  std::u16string base, variant;
};
LanguageName split_language_name(std::u16string_view description);

}  // namespace kavo
