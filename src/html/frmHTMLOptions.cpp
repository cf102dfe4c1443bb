#include "html/frmHTMLOptions.h"

#include <algorithm>

#include "common/leading_number.h"
#include "forms/list_editing.h"
#include "html/repair/tag_table.h"
#include "platform/case_fold.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

// In the text form of the table "," separates the entries and "|" a name from its flag.
constexpr std::u16string_view kSeparators = u",|";

}  // namespace

frmHTMLOptions::frmHTMLOptions()
    : QuestionForm(u"frmHTMLOptions"),
      fraTags(*this, u"fraTags", dialog_units(7, 7, 196, 136)),
      txtTag(*this, u"txtTag", dialog_units(14, 19, 128, 14)),
      cmdAdd(*this, u"cmdAdd", dialog_units(146, 19, 50, 14)),
      lstTags(*this, u"lstTags", dialog_units(14, 37, 128, 82)),
      cmdRemove(*this, u"cmdRemove", dialog_units(146, 37, 50, 14)),
      cmdClear(*this, u"cmdClear", dialog_units(146, 55, 50, 14)),
      chkOverlap(*this, u"chkOverlap", dialog_units(14, 126, 182, 10)),
      cmdOK(*this, u"cmdOK", dialog_units(99, 150, 50, 14)),
      cmdCancel(*this, u"cmdCancel", dialog_units(153, 150, 50, 14)) {
  size(dialog_units(0, 0, 210, 171));
  set_captions();
  lstTags.on_click = [this] { show_selected(); };
  chkOverlap.on_click = [this] { lstTags.ItemData(lstTags.ListIndex(), chkOverlap.Value() ? 1 : 0); };
  cmdAdd.on_click = [this] { add_tag(); };
  cmdRemove.on_click = [this] {
    remove_selected(lstTags);
    show_selected();
  };
  cmdClear.on_click = [this] {
    lstTags.Clear();
    show_selected();
  };
  ends_by(cmdOK, cmdCancel);
  show_selected();
}

void frmHTMLOptions::set_captions() {
  Caption(text::kHtmlOptions.text);
  fraTags.Caption(text::kRecognizedTags.text);
  txtTag.Caption(text::kNewTag.text);
  cmdAdd.Caption(text::kAdd.text);
  lstTags.Caption(text::kRecognizedTags.text);
  cmdRemove.Caption(text::kRemove.text);
  cmdClear.Caption(text::kClear.text);
  chkOverlap.Caption(text::kOverlapAllowed.text);
  cmdOK.Caption(text::kOptionsOK.text);
  cmdCancel.Caption(text::kOptionsCancel.text);
}

// Without a selected item the box is unticked and has nothing to change.
void frmHTMLOptions::show_selected() {
  const std::int32_t index = lstTags.ListIndex();
  chkOverlap.Enabled(index >= 0);
  chkOverlap.Value(lstTags.ItemData(index) == 1);
}

void frmHTMLOptions::add_tag() {
  const std::u16string name = upper_case(typed_name(txtTag.Text(), kSeparators));
  if (lstTags.ListCount() == static_cast<std::int32_t>(TagTable::kCapacity) && !name.empty() &&
      lstTags.find(name) < 0) {
    ports().desktop->message_box(text::kTagListFull.text, Caption(), MessageIcon::kExclamation);
    return;
  }
  if (add_typed_name(lstTags, name, txtTag)) lstTags.ListIndex(lstTags.ListCount() - 1);
}

std::u16string frmHTMLOptions::Tags() const {
  std::u16string tags;
  for (const ListItem& item : lstTags.items()) tags += formatted(u"{}|{},", item.text, item.data);
  return tags;
}

void frmHTMLOptions::Tags(std::u16string_view value) {
  lstTags.Clear();
  for (std::size_t comma; !value.empty(); value.remove_prefix(std::min(comma + 1, value.size()))) {
    comma = std::min(value.find(u','), value.size());
    const std::u16string_view piece = value.substr(0, comma);
    const std::size_t bar = std::min(piece.find(u'|'), piece.size());
    lstTags.AddItem(piece.substr(0, bar), leading_number(piece.substr(std::min(bar + 1, piece.size()))));
  }
  if (lstTags.ListCount() > 0)
    lstTags.ListIndex(0);
  else
    show_selected();
}

}  // namespace kavo
