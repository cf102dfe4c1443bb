#include "screenshot.h"

#include <gtest/gtest.h>
#include <objidl.h>
// The flat interface: what the classes around it hide is a handle and a status.
#include <gdiplus.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "platform/win32/owners.h"

namespace kavo::test {
namespace {

using unique_bitmap = unique_owner<HandleTraits<HBITMAP, DeleteObject>>;

class GdiPlus {
 public:
  GdiPlus() {
    const Gdiplus::GdiplusStartupInput input;
    EXPECT_EQ(Gdiplus::GdiplusStartup(&token_, &input, nullptr), Gdiplus::Ok);
  }
  ~GdiPlus() { Gdiplus::GdiplusShutdown(token_); }
  GdiPlus(const GdiPlus&) = delete;
  GdiPlus& operator=(const GdiPlus&) = delete;

 private:
  ULONG_PTR token_ = 0;
};

}  // namespace

void take_screenshot(HWND window, const std::wstring& name) {
  RECT rect{};
  GetWindowRect(window, &rect);
  const LONG width = rect.right - rect.left;
  const LONG height = rect.bottom - rect.top;
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top row first
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const unique_bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  ASSERT_TRUE(bitmap);
  const HDC source = GetWindowDC(window);
  const HDC target = CreateCompatibleDC(source);
  const HGDIOBJ before = SelectObject(target, bitmap.get());
  // Only what lies on the screen is drawn: a wide window is moved past it.
  const LONG screen = GetSystemMetrics(SM_CXSCREEN);
  for (LONG left = 0; left < width; left += screen) {
    SetWindowPos(window, nullptr, -left, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    BitBlt(target, left, 0, std::min(screen, width - left), height, source, left, 0, SRCCOPY);
  }
  SetWindowPos(window, nullptr, rect.left, rect.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  GdiFlush();
  SelectObject(target, before);
  DeleteDC(target);
  ReleaseDC(window, source);
  const auto* pixels = static_cast<const DWORD*>(bits);
  const std::vector<DWORD> all(pixels, pixels + width * height);
  EXPECT_FALSE(std::ranges::all_of(all, [&](DWORD pixel) { return pixel == all.front(); })) << "nothing was drawn";

  const std::filesystem::path folder(KAVO_SCREENSHOTS);
  std::filesystem::create_directories(folder);
  const GdiPlus library;
  Gdiplus::GpBitmap* picture = nullptr;
  ASSERT_EQ(Gdiplus::DllExports::GdipCreateBitmapFromScan0(width, height, width * 4, PixelFormat32bppRGB,
                                                           static_cast<BYTE*>(bits), &picture),
            Gdiplus::Ok);
  constexpr CLSID kPngEncoder{0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
  EXPECT_EQ(
      Gdiplus::DllExports::GdipSaveImageToFile(picture, (folder / (name + L".png")).c_str(), &kPngEncoder, nullptr),
      Gdiplus::Ok);
  Gdiplus::DllExports::GdipDisposeImage(picture);
}

}  // namespace kavo::test
