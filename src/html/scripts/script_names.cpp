#include "html/scripts/script_names.h"

#include <algorithm>

#include "common/clsCommon.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

struct Parts {
  explicit Parts(std::u16string_view name)
      : folder(clsCommon().strParseFileName(name, 0)),
        base(clsCommon().strParseFileName(name, 1)),
        extension(clsCommon().strParseFileName(name, 2)) {}
  std::u16string folder, base, extension;
};

// index_asp names index.asp again; a base name without such an end gets ".asp".
std::u16string page_name(const Parts& parts) {
  const auto mark = parts.base.rfind(u'_');
  if (mark != parts.base.npos) {
    const std::u16string kind = ascii_upper(std::u16string_view(parts.base).substr(mark, 4));
    constexpr std::u16string_view kinds[] = {u"_ASP", u"_JSP", u"_WSP", u"_HTM"};
    if (std::ranges::find(kinds, kind) != std::end(kinds))
      return parts.folder + parts.base.substr(0, mark) + u"." + parts.base.substr(mark + 1);
  }
  return parts.folder + parts.base + u".asp";
}

void complete(ScriptNames& names, std::u16string_view base_path, bool script_has_extension) {
  if (!names.html.empty() && !names.script.empty()) return;
  const Parts parts(base_path);
  const std::u16string marked = parts.folder + parts.base + u"_" + parts.extension;
  if (names.script.empty()) names.script = (script_has_extension ? marked : parts.folder + parts.base) + u".scr";
  if (names.page.empty()) names.page = page_name(parts);
  if (names.html.empty()) names.html = marked + u".htm";
}

}  // namespace

void complete_from_page(ScriptNames& names) { complete(names, std::u16string(names.page), true); }
void complete_from_html(ScriptNames& names) { complete(names, std::u16string(names.html), false); }

}  // namespace kavo
