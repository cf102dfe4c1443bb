#include "ui/win32/dpi.h"

#include "platform/win32/system_error.h"

namespace kavo {
namespace {

// Functions that came after Windows 7; null where the system has none.
template <typename Function>
Function* user_function(const char* name) {
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

UINT system_dpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<UINT>(dpi);
}

}  // namespace

ScalingScope::ScalingScope() {
  static const auto set_context = user_function<HANDLE WINAPI(HANDLE)>("SetThreadDpiAwarenessContext");
  const auto per_monitor = reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-4));
  if (set_context == nullptr) return;
  before_ = set_context(per_monitor);
  restore_ = set_context;
}

ScalingScope::~ScalingScope() {
  if (before_ != nullptr) restore_(before_);
}

UINT dpi_of(HWND window) {
  static const auto of_window = user_function<UINT WINAPI(HWND)>("GetDpiForWindow");
  const UINT dpi = of_window != nullptr ? of_window(window) : 0;
  return dpi != 0 ? dpi : system_dpi();
}

LOGFONTW message_font(UINT dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  static const auto for_dpi = user_function<BOOL WINAPI(UINT, UINT, void*, UINT, UINT)>("SystemParametersInfoForDpi");
  if (for_dpi != nullptr && for_dpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi))
    return metrics.lfMessageFont;
  if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) throw_last_error();
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, static_cast<int>(dpi), static_cast<int>(system_dpi()));
  return font;
}

}  // namespace kavo
