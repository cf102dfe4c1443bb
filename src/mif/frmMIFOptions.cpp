#include "mif/frmMIFOptions.h"

#include "forms/list_editing.h"
#include "mif/mif_settings.h"
#include "platform/trimmed.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::u16string_view kMarkerEnd = u"\t";

}  // namespace

frmMIFOptions::frmMIFOptions()
    : QuestionForm(u"frmMIFOptions"),
      fraSplit(*this, u"fraSplit", dialog_units(7, 7, 196, 34)),
      cmbSplit(*this, u"cmbSplit", dialog_units(14, 19, 182, 14)),
      chkProcessObjects(*this, u"chkProcessObjects", dialog_units(7, 48, 196, 10)),
      fraMarkers(*this, u"fraMarkers", dialog_units(7, 65, 196, 102)),
      txtMarker(*this, u"txtMarker", dialog_units(14, 77, 128, 14)),
      cmdAdd(*this, u"cmdAdd", dialog_units(146, 77, 50, 14)),
      lstMarkers(*this, u"lstMarkers", dialog_units(14, 95, 128, 65)),
      cmdRemove(*this, u"cmdRemove", dialog_units(146, 95, 50, 14)),
      cmdClear(*this, u"cmdClear", dialog_units(146, 113, 50, 14)),
      cmdDefault(*this, u"cmdDefault", dialog_units(146, 131, 50, 14)),
      cmdOK(*this, u"cmdOK", dialog_units(99, 174, 50, 14)),
      cmdCancel(*this, u"cmdCancel", dialog_units(153, 174, 50, 14)) {
  size(dialog_units(0, 0, 210, 195));
  set_captions();
  for (const TextRow split : {text::kDontSplit, text::kSplitAtSemicolon, text::kSplitAtBoth})
    cmbSplit.AddItem(split.text);

  // Blanks are removed before tabs, deliberately: a blank after a tab stays.
  cmdAdd.on_click = [this] {
    add_typed_name(lstMarkers, without_characters(trimmed(txtMarker.Text()), kMarkerEnd), txtMarker);
  };
  cmdRemove.on_click = [this] { remove_selected(lstMarkers); };
  cmdClear.on_click = [this] { lstMarkers.Clear(); };
  cmdDefault.on_click = [this] { Markers(kDefaultMifMarkers); };
  ends_by(cmdOK, cmdCancel);
}

void frmMIFOptions::set_captions() {
  Caption(text::kMifOptions.text);
  fraSplit.Caption(text::kIndexSplitting.text);
  cmbSplit.Caption(text::kIndexSplitting.text);
  chkProcessObjects.Caption(text::kRemoveObjects.text);
  fraMarkers.Caption(text::kMarkerTypes.text);
  txtMarker.Caption(text::kNewMarkerType.text);
  cmdAdd.Caption(text::kAdd.text);
  lstMarkers.Caption(text::kMarkerTypes.text);
  cmdRemove.Caption(text::kRemove.text);
  cmdClear.Caption(text::kClear.text);
  cmdDefault.Caption(text::kDefaultMarkers.text);
  cmdOK.Caption(text::kOptionsOK.text);
  cmdCancel.Caption(text::kOptionsCancel.text);
}

std::u16string frmMIFOptions::Markers() const {
  std::u16string markers;
  for (const ListItem& item : lstMarkers.items()) (markers += item.text) += kMarkerEnd;
  return markers;
}

void frmMIFOptions::Markers(std::u16string_view value) {
  lstMarkers.Clear();
  for (std::size_t end; (end = value.find(kMarkerEnd)) != std::u16string_view::npos; value.remove_prefix(end + 1))
    lstMarkers.AddItem(value.substr(0, end));
}

}  // namespace kavo
