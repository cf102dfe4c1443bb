#include "forms/list_editing.h"

#include <algorithm>

#include "common/clsCommon.h"
#include "platform/trimmed.h"

namespace kavo {

bool add_typed_name(ItemControl& list, std::u16string_view name, TextBox& box) {
  if (name.empty()) return false;
  const bool is_new = list.find(name) < 0;
  if (is_new) {
    list.AddItem(name);
    box.Text(u"");
  }
  box.SetFocus();
  if (!is_new) clsCommon().HighLight(box);
  return is_new;
}

void remove_selected(ItemControl& list) {
  const std::int32_t index = list.ListIndex();
  if (index < 0) return;
  list.RemoveItem(index);
  list.ListIndex(std::min(index, list.ListCount() - 1));
}

std::u16string without_characters(std::u16string_view text, std::u16string_view characters) {
  std::u16string rest;
  for (const char16_t c : text)
    if (characters.find(c) == std::u16string_view::npos) rest += c;
  return rest;
}

std::u16string typed_name(std::u16string_view text, std::u16string_view separators) {
  return std::u16string(trimmed(without_characters(text, separators)));
}

}  // namespace kavo
