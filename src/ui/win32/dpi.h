// Screens of different resolutions.
#pragma once

#include <windows.h>

namespace kavo {

// As long as it lives, top-level windows that the calling thread makes are drawn for the resolution of the screen that
// they are on, whatever the process has chosen for its own windows. Before Windows 10 (1703) the choice of the process
// holds.
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

// Dots per inch of the screen that a window is on, as the system reports them to that window.
UINT dpi_of(HWND window);

// The system's message font for a number of dots per inch. Throws `failure` when the system does not provide it.
LOGFONTW message_font(UINT dpi);

}  // namespace kavo
