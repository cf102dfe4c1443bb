// Pictures of windows.
#pragma once

#include <windows.h>

#include <string>

namespace kavo::test {

// Writes what the window shows as a PNG file of that name into the build's folder of screenshots; any thread of the
// window's process may do it. Fails the test when the picture cannot be taken or shows a single colour.
void take_screenshot(HWND window, const std::wstring& name);

}  // namespace kavo::test
