// The dialog that starts the translation of one file: the file, a translation memory if wanted, the two languages, and
// the options of the file's type.
//
// After OK the path of the file is absolute, and so is that of a memory that is a file.
//
// It remembers the folder of the last file, the last languages and the last memory for the user. If the settings cannot
// be written, nothing is remembered, because that must not keep anyone from working.
#pragma once

#include <string>
#include <string_view>

#include "forms/question_form.h"
#include "html/repair/clsHTMLValidate.h"
#include "platform/automation.h"
#include "ui/morLanguage.h"
#include "ui/wizard_services.h"

namespace kavo {

class frmWizard final : public QuestionForm {
 public:
  explicit frmWizard(WizardServices services);

  // The memory that was used last, described as SetLastTM takes it; "" for none.
  std::u16string LastTM() const;
  // Offers a memory by its description, which has the form: name="..." type="...". A description without a name changes
  // nothing.
  void SetLastTM(std::u16string_view description);
  static std::u16string NameOfTM(std::u16string_view description);

  // The memory chosen, "" for none.
  const std::u16string& TM() const { return tm_path_; }
  // Type code of the file in the box.
  std::int32_t SourceType() const { return source_type_; }
  // The tag table for pages, with what the user changed in the options; it is stored nowhere and holds for the run that
  // follows.
  std::u16string HTMLTags() const { return html_.Tags(); }

  Label lblLabel[4];
  TextBox txtSourceFile;
  Button cmdBrowse;
  Label lblFileType;  // says that the type of the file is not known
  Button cmdOptions;
  TextBox txtLang[2];
  Button cmdChangeLang[2];
  TextBox txtTM;
  Button cmdClear, cmdNew, cmdOpen;
  Button cmdKAVO;
  Button cmdOK, cmdCancel;
  morLanguage morLang[2];  // never shown: they only hold the choices

 private:
  void set_captions();
  void set_handlers();
  void lay_out();
  void load_languages();
  void show_languages();
  void complete_paths();
  void save() const;
  void browse();
  void source_changed();
  void show_options();
  void change_language(std::size_t which);
  void tm_changed();
  void ask_for_tm(std::u16string_view operation);
  void start_editor();

  WizardServices services_;
  clsHTMLValidate html_;
  ObjectRef tm_component_;  // null when the suite has none: the row of the memory is then hidden
  std::u16string tm_path_;
  std::u16string tm_type_;  // as described, "" for a memory that was chosen here
  std::int32_t source_type_ = 0;
};

}  // namespace kavo
