// Screens of different resolutions.
#pragma once

#include <windows.h>

namespace kavo {

// Top windows made by the calling thread as long as it lives are drawn for the screen that they are on, however their
// process has its own drawn; before Windows 10 (1703) there is no such thing, and the process decides.
class ScalingScope {
 public:
  ScalingScope();
  ~ScalingScope();
  ScalingScope(const ScalingScope&) = delete;
  ScalingScope& operator=(const ScalingScope&) = delete;

 private:
  HANDLE before_ = nullptr;
  HANDLE(WINAPI* restore_)(HANDLE) = nullptr;
};

// Dots per inch of the screen that a window is on, as far as the window sees them.
UINT dpi_of(HWND window);

// The system's message font for a number of dots per inch. Throws `failure` when the system does not tell.
LOGFONTW message_font(UINT dpi);

}  // namespace kavo
