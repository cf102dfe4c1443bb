// The dialog that changes one language of the wizard. The user can show or hide the row of the character set; the
// choice is remembered.
#pragma once

#include "forms/question_form.h"
#include "ui/morLanguage.h"

namespace kavo {

// The caller presets morLang, shows the form and, unless it was cancelled, reads morLang.
class frmSetLanguage final : public QuestionForm {
 public:
  frmSetLanguage();
  // Remembers whether the character set row is shown, also after Cancel.
  ~frmSetLanguage() override;

  morLanguage morLang;
  Button cmdToggle;
  Button cmdOK, cmdCancel;

 private:
  void show_char_set(bool show);
};

}  // namespace kavo
