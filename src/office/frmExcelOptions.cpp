#include "office/frmExcelOptions.h"

#include "office/excel_options.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::size_t kLongestTolerance = 5;

}  // namespace

frmExcelOptions::frmExcelOptions()
    : QuestionForm(u"frmExcelOptions"),
      fraOrder(*this, u"fraOrder", dialog_units(7, 7, 196, 44)),
      optOrder{{*this, u"optOrder(0)", dialog_units(14, 19, 182, 10), fraOrder},
               {*this, u"optOrder(1)", dialog_units(14, 34, 182, 10), fraOrder}},
      chkExportHidden(*this, u"chkExportHidden", dialog_units(7, 58, 196, 10)),
      chkExportFormulas(*this, u"chkExportFormulas", dialog_units(7, 72, 196, 10)),
      chkUngroupObjects(*this, u"chkUngroupObjects", dialog_units(7, 86, 196, 10)),
      lblBlankCellTolerance(*this, u"lblBlankCellTolerance", dialog_units(7, 106, 152, 8)),
      txtBlankCellTolerance(*this, u"txtBlankCellTolerance", dialog_units(163, 103, 40, 14)),
      cmdOK(*this, u"cmdOK", dialog_units(99, 124, 50, 14)),
      cmdCancel(*this, u"cmdCancel", dialog_units(153, 124, 50, 14)) {
  size(dialog_units(0, 0, 210, 145));
  set_captions();
  chkUngroupObjects.on_click = [this] {
    if (!loading_ && chkUngroupObjects.Value())
      ports().desktop->message_box(excel_options_text::kUngroupWarning.text, u"", MessageIcon::kInformation);
  };
  txtBlankCellTolerance.on_change = [this] {
    if (!loading_) keep_digits();
  };
  ends_by(cmdOK, cmdCancel, [this] { save(); });
  load();
}

void frmExcelOptions::set_captions() {
  Caption(excel_options_text::kTitle.text);
  fraOrder.Caption(excel_options_text::kOrder.text);
  optOrder[0].Caption(excel_options_text::kByRows.text);
  optOrder[1].Caption(excel_options_text::kByColumns.text);
  chkExportHidden.Caption(excel_options_text::kHidden.text);
  chkExportFormulas.Caption(excel_options_text::kFormulas.text);
  chkUngroupObjects.Caption(excel_options_text::kUngroup.text);
  lblBlankCellTolerance.Caption(excel_options_text::kBlankCells.text);
  cmdOK.Caption(excel_options_text::kOK.text);
  cmdCancel.Caption(excel_options_text::kCancel.text);
}

void frmExcelOptions::load() {
  loading_ = true;
  const ExcelOptions options = load_excel_options();
  for (std::int32_t i = 0; i < 2; ++i) optOrder[i].Value(options.order == i);
  chkExportHidden.Value(options.hidden);
  chkExportFormulas.Value(options.formulas);
  chkUngroupObjects.Value(options.ungroup);
  txtBlankCellTolerance.Text(options.tolerance);
  loading_ = false;
}

// If the settings cannot be written, they stay as they are and the user sees a message.
void frmExcelOptions::save() const {
  ExcelOptions options;
  options.order = optOrder[0].Value() ? 0 : 1;
  options.hidden = chkExportHidden.Value();
  options.formulas = chkExportFormulas.Value();
  options.ungroup = chkUngroupObjects.Value();
  options.tolerance = txtBlankCellTolerance.Text();
  try {
    save_excel_options(options);
  } catch (const failure& reason) {
    ports().desktop->message_box(reason.description(), Caption(), MessageIcon::kExclamation);
  }
}

// Writing the text back raises the event once more, and then nothing changes.
void frmExcelOptions::keep_digits() {
  std::u16string digits;
  for (const char16_t c : txtBlankCellTolerance.Text())
    if (c >= u'0' && c <= u'9' && digits.size() < kLongestTolerance) digits += c;
  txtBlankCellTolerance.Text(digits);
}

}  // namespace kavo
