// Fonts for the language of the person in front of the form.
#pragma once

#include "forms/control.h"

namespace kavo {

// The font that shows the script of an ANSI code page: its character set, for the East Asian code pages the face that
// Windows ships for them, and never below 9 points. A symbol font, the code page 1252 and a code page that is none of
// the ANSI ones leave the font as it is; so does a size of 0, which is the system's own choice.
ControlFont locale_font(ControlFont font, unsigned code_page);

// The same for the labels and boxes of a form, by the system's ANSI code page.
void set_locale_font(Control& control);

}  // namespace kavo
