#include "ui/win32/dialog_fonts.h"

#include <algorithm>

#include "platform/win32/system_error.h"
#include "platform/win32/text.h"
#include "ui/win32/dpi.h"

namespace kavo {
namespace {

constexpr int kPointsPerInch = 72;
constexpr int kHorizontalUnitsPerBase = 4;
constexpr int kVerticalUnitsPerBase = 8;

struct ScreenContext {
  HDC context = GetDC(nullptr);
  ScreenContext() = default;
  ~ScreenContext() { ReleaseDC(nullptr, context); }
  ScreenContext(const ScreenContext&) = delete;
  ScreenContext& operator=(const ScreenContext&) = delete;
};

// Measures like the dialog manager: the average width of the Latin letters, and the height of a line.
SIZE base_units(HFONT font) {
  constexpr std::wstring_view kLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int kHalf = static_cast<int>(kLetters.size()) / 2;
  const ScreenContext screen;
  const HGDIOBJ before = SelectObject(screen.context, font);
  SIZE letters{};
  TEXTMETRICW metrics{};
  GetTextExtentPoint32W(screen.context, kLetters.data(), static_cast<int>(kLetters.size()), &letters);
  GetTextMetricsW(screen.context, &metrics);
  SelectObject(screen.context, before);
  return {(letters.cx / kHalf + 1) / 2, metrics.tmHeight};
}

}  // namespace

LONG line_height(HFONT font) { return base_units(font).cy; }

DialogFonts::DialogFonts(UINT dpi)
    : dpi_(dpi), message_font_(message_font(dpi)), base_(base_units(font(ControlFont()))) {}

HFONT DialogFonts::font(const ControlFont& wanted) {
  const auto known = std::ranges::find(fonts_, wanted, &std::pair<ControlFont, unique_font>::first);
  if (known != fonts_.end()) return known->second.get();
  LOGFONTW description = message_font_;
  if (wanted.size != 0) description.lfHeight = -MulDiv(wanted.size, static_cast<int>(dpi_), kPointsPerInch);
  if (wanted.character_set != DEFAULT_CHARSET) description.lfCharSet = static_cast<BYTE>(wanted.character_set);
  if (!wanted.face.empty()) {
    const std::wstring face = to_wide(wanted.face);
    lstrcpynW(description.lfFaceName, face.c_str(), LF_FACESIZE);
  }
  unique_font made(CreateFontIndirectW(&description));
  if (!made) throw_last_error();
  return fonts_.emplace_back(wanted, std::move(made)).second.get();
}

RECT DialogFonts::pixels(const Place& units) const {
  const auto across = [&](std::int32_t value) {
    return MulDiv(value, base_.cx, kHorizontalUnitsPerBase * kUnitsPerDialogUnit);
  };
  const auto down = [&](std::int32_t value) {
    return MulDiv(value, base_.cy, kVerticalUnitsPerBase * kUnitsPerDialogUnit);
  };
  return {across(units.left), down(units.top), across(units.right()), down(units.bottom())};
}

}  // namespace kavo
