// The fonts of a dialog, and how many pixels a dialog unit has in them.
#pragma once

#include <windows.h>

#include <utility>
#include <vector>

#include "forms/control.h"
#include "platform/win32/owners.h"

namespace kavo {

using unique_font = unique_owner<HandleTraits<HFONT, DeleteObject>>;

LONG line_height(HFONT font);  // in pixels

class DialogFonts {
 public:
  // The system's message font for a number of dots per inch gives the dialog units. Throws `failure` when the system
  // makes no font.
  explicit DialogFonts(UINT dpi);

  // Owned here; the same handle for the same font.
  HFONT font(const ControlFont& font);
  // `units` in pixels. Right and bottom are rounded like left and top, so that controls that touch in units also touch
  // in pixels.
  RECT pixels(const Place& units) const;

 private:
  UINT dpi_;
  LOGFONTW message_font_;
  std::vector<std::pair<ControlFont, unique_font>> fonts_;
  SIZE base_{};  // pixels of four horizontal and eight vertical dialog units
};

}  // namespace kavo
