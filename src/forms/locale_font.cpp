#include "forms/locale_font.h"

#include <algorithm>

#include "platform/ports.h"

namespace kavo {
namespace {

struct Script {
  unsigned code_page;
  std::int32_t character_set;  // as LOGFONT numbers them
  std::u16string_view face;    // "" where any face has the script
};

constexpr std::int32_t kSymbolSet = 2;
constexpr std::int32_t kLeastSize = 9;  // points: below it the strokes of such scripts run together

constexpr Script kScripts[] = {
    {874, 222, u""},              // Thai
    {932, 128, u"MS UI Gothic"},  // Japanese
    {936, 134, u"SimSun"},        // Chinese, simplified
    {949, 129, u"Gulim"},         // Korean
    {950, 136, u"PMingLiU"},      // Chinese, traditional
    {1250, 238, u""},             // Central European
    {1251, 204, u""},             // Cyrillic
    {1253, 161, u""},             // Greek
    {1254, 162, u""},             // Turkish
    {1255, 177, u""},             // Hebrew
    {1256, 178, u""},             // Arabic
    {1257, 186, u""},             // Baltic
    {1258, 163, u""},             // Vietnamese
    {1361, 130, u"Gulim"},        // Korean, Johab
};

}  // namespace

ControlFont locale_font(ControlFont font, unsigned code_page) {
  const auto* const script = std::ranges::find(kScripts, code_page, &Script::code_page);
  if (script == std::end(kScripts) || font.character_set == kSymbolSet) return font;
  font.character_set = script->character_set;
  if (!script->face.empty()) font.face = script->face;
  if (font.size != 0) font.size = std::max(font.size, kLeastSize);
  return font;
}

void set_locale_font(Control& control) { control.font(locale_font(control.font(), ports().code_page->number())); }

}  // namespace kavo
