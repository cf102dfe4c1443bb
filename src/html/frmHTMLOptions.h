// The dialog of the validator's tag table: which elements are checked, and which of them may overlap others.
#pragma once

#include <string>
#include <string_view>

#include "forms/question_form.h"

namespace kavo {

class frmHTMLOptions final : public QuestionForm {
 public:
  frmHTMLOptions();

  // The table in the text form of clsHTMLValidate::Tags. The data of a list item is the element's flag.
  std::u16string Tags() const;
  void Tags(std::u16string_view value);

  Frame fraTags;
  TextBox txtTag;
  Button cmdAdd;
  ListBox lstTags;
  Button cmdRemove, cmdClear;
  CheckBox chkOverlap;
  Button cmdOK, cmdCancel;

 private:
  void set_captions();
  void show_selected();
  void add_tag();
};

}  // namespace kavo
