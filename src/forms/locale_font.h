// Finds fonts for the language of the person who uses the form.
#pragma once

#include "forms/control.h"

namespace kavo {

// The font that shows the script of an ANSI code page: with its character set, at least 9 points and, for the East
// Asian code pages, the face that Windows ships for them. A size of 0, the system's own choice, stays 0. Symbol fonts,
// code page 1252 and code pages that are not ANSI leave the font as it is.
ControlFont locale_font(ControlFont font, unsigned code_page);

// The same for the labels and boxes of a form, by the system's ANSI code page.
void set_locale_font(Control& control);

}  // namespace kavo
