// The dialog for what the export of workbooks includes. OK stores the options (excel_options.h), which the export macro
// reads; nothing else in the library does.
#pragma once

#include "forms/question_form.h"

namespace kavo {

class frmExcelOptions final : public QuestionForm {
 public:
  // Shows the stored options.
  frmExcelOptions();

  Frame fraOrder;
  OptionButton optOrder[2];
  CheckBox chkExportHidden, chkExportFormulas, chkUngroupObjects;
  Label lblBlankCellTolerance;
  TextBox txtBlankCellTolerance;
  Button cmdOK, cmdCancel;

 private:
  void set_captions();
  void load();
  void save() const;
  void keep_digits();

  bool loading_ = false;
};

}  // namespace kavo
