// The dialog of what the export of workbooks takes in. OK stores the options (excel_options.h); nothing else of the
// library reads them, the export macro does.
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
