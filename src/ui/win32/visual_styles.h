// The system's theme for dialogs in whatever process they appear.
#pragma once

#include <windows.h>

namespace kavo {

// As long as it lives, windows that the calling thread makes get the common controls that follow the theme. Whether a
// host's own manifest asks for them does not matter: the activation context comes from a resource of the module (DLL or
// program) that this is linked into. Without that resource the controls have their plain look.
class VisualStyles {
 public:
  VisualStyles();
  ~VisualStyles();
  VisualStyles(const VisualStyles&) = delete;
  VisualStyles& operator=(const VisualStyles&) = delete;

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace kavo
