// The dialog of the MIF options: how index texts are split, which marker types are extracted, and whether embedded
// objects are taken out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/question_form.h"

namespace kavo {

class frmMIFOptions final : public QuestionForm {
 public:
  frmMIFOptions();

  // The index of the selected item of `cmbSplit`: 0, 1 or 2. Setting any other value selects no item, which reads as
  // -1.
  std::int16_t SplitOptions() const { return static_cast<std::int16_t>(cmbSplit.ListIndex()); }
  void SplitOptions(std::int16_t value) { cmbSplit.ListIndex(value); }
  bool ProcessObjects() const { return chkProcessObjects.Value(); }
  void ProcessObjects(bool value) { chkProcessObjects.Value(value); }
  // The names of the list, each followed by one TAB.
  std::u16string Markers() const;
  void Markers(std::u16string_view value);

  Frame fraSplit;
  ComboBox cmbSplit;
  CheckBox chkProcessObjects;
  Frame fraMarkers;
  TextBox txtMarker;
  Button cmdAdd;
  ListBox lstMarkers;
  Button cmdRemove, cmdClear, cmdDefault;
  Button cmdOK, cmdCancel;

 private:
  void set_captions();
};

}  // namespace kavo
