// What the dialogs that edit a list of names have in common.
#pragma once

#include <string>
#include <string_view>

#include "forms/controls.h"

namespace kavo {

// Adds a name that was typed in `box` to the end of the list; the box is then empty and has the focus, so that several
// names can be typed in a row. "" is ignored; a name that is in the list already (exactly) stays in the box, selected.
// True when the name was added.
bool add_typed_name(ItemControl& list, std::u16string_view name, TextBox& box);

// Removes the selected item and selects the one that is now in its place, the last one when there is none.
void remove_selected(ItemControl& list);

std::u16string without_characters(std::u16string_view text, std::u16string_view characters);

// The text without the blanks around it and without any of `separators`, which would cut it in two where it is stored.
std::u16string typed_name(std::u16string_view text, std::u16string_view separators);

}  // namespace kavo
