// The texts of the dialogs in Japanese, by the names of their controls; "" is the form's own caption. A test puts them
// into the forms to see that the layout holds them.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/locale_font.h"

namespace kavo::test {

using Texts = std::map<std::u16string, std::u16string, std::less<>>;

inline const Texts& japanese_wizard() {
  static const Texts texts{
      {u"", u"\u7FFB\u8A33\u306E\u958B\u59CB"},
      {u"lblLabel(0)",
       u"\u7FFB\u8A33\u3059\u308B\u30D5\u30A1\u30A4\u30EB\u3092\u9078\u629E\u3057\u3066"
       u"\u304F\u3060\u3055\u3044(&F):"},
      {u"lblLabel(1)", u"\u539F\u6587\u306E\u8A00\u8A9E(&S)"},
      {u"lblLabel(2)", u"\u8A33\u6587\u306E\u8A00\u8A9E(&T)"},
      {u"lblLabel(3)", u"\u7FFB\u8A33\u30E1\u30E2\u30EA(\u7701\u7565\u53EF)(&M)"},
      {u"lblFileType", u"\u8A8D\u8B58\u3067\u304D\u306A\u3044\u30D5\u30A1\u30A4\u30EB\u306E\u7A2E\u985E\u3067\u3059"},
      {u"cmdBrowse", u"\u53C2\u7167(&B)..."},
      {u"cmdOptions", u"\u8A2D\u5B9A..."},
      {u"cmdChangeLang(0)", u"\u5909\u66F4(&A)..."},
      {u"cmdChangeLang(1)", u"\u5909\u66F4(&G)..."},
      {u"cmdClear", u"\u30AF\u30EA\u30A2(&C)"},
      {u"cmdNew", u"\u65B0\u898F(&N)..."},
      {u"cmdOpen", u"\u958B\u304F(&O)..."},
      {u"cmdKAVO", u"\u30A8\u30C7\u30A3\u30BF\u8D77\u52D5(&E)"},
      {u"cmdCancel", u"\u30AD\u30E3\u30F3\u30BB\u30EB"},
  };
  return texts;
}

inline const Texts& japanese_set_language() {
  static const Texts texts{
      {u"", u"\u8A00\u8A9E\u306E\u8A2D\u5B9A"},
      {u"morLang.lblLanguage", u"\u8A00\u8A9E"},
      {u"morLang.lblCharSet", u"\u6587\u5B57\u30BB\u30C3\u30C8"},
      {u"cmdToggle", u"\u7C21\u6613\u8868\u793A <<"},
      {u"cmdCancel", u"\u30AD\u30E3\u30F3\u30BB\u30EB"},
  };
  return texts;
}

inline const Texts& japanese_mif_options() {
  static const Texts texts{
      {u"", u"MIF \u306E\u8A2D\u5B9A"},
      {u"fraSplit", u"\u7D22\u5F15\u9805\u76EE\u306E\u5206\u5272"},
      {u"chkProcessObjects",
       u"\u57CB\u3081\u8FBC\u307F\u30AA\u30D6\u30B8\u30A7\u30AF\u30C8\u3092"
       u"\u53D6\u308A\u9664\u304F(&O)"},
      {u"fraMarkers", u"\u30DE\u30FC\u30AB\u30FC\u306E\u7A2E\u985E"},
      {u"cmdAdd", u"\u8FFD\u52A0(&A)"},
      {u"cmdRemove", u"\u524A\u9664(&R)"},
      {u"cmdClear", u"\u30AF\u30EA\u30A2(&C)"},
      {u"cmdDefault", u"\u65E2\u5B9A\u5024(&D)"},
      {u"cmdCancel", u"\u30AD\u30E3\u30F3\u30BB\u30EB"},
  };
  return texts;
}

inline const Texts& japanese_html_options() {
  static const Texts texts{
      {u"", u"HTML \u306E\u8A2D\u5B9A"},
      {u"fraTags", u"\u8A8D\u8B58\u3059\u308B\u30BF\u30B0"},
      {u"cmdAdd", u"\u8FFD\u52A0(&A)"},
      {u"cmdRemove", u"\u524A\u9664(&R)"},
      {u"cmdClear", u"\u30AF\u30EA\u30A2(&C)"},
      {u"chkOverlap", u"\u91CD\u306A\u308A\u3092\u8A31\u53EF\u3059\u308B(&O)"},
      {u"cmdCancel", u"\u30AD\u30E3\u30F3\u30BB\u30EB"},
  };
  return texts;
}

inline const Texts& japanese_excel_options() {
  static const Texts texts{
      {u"", u"\u8868\u8A08\u7B97\u306E\u8A2D\u5B9A"},
      {u"fraOrder", u"\u30BB\u30EB\u306E\u9806\u5E8F"},
      {u"optOrder(0)", u"\u884C\u3054\u3068(&R)"},
      {u"optOrder(1)", u"\u5217\u3054\u3068(&C)"},
      {u"chkExportHidden", u"\u975E\u8868\u793A\u306E\u5185\u5BB9\u3092\u66F8\u304D\u51FA\u3059(&H)"},
      {u"chkExportFormulas", u"\u6570\u5F0F\u3092\u66F8\u304D\u51FA\u3059(&F)"},
      {u"chkUngroupObjects",
       u"\u66F8\u304D\u51FA\u3059\u524D\u306B\u30B0\u30EB\u30FC\u30D7\u3092"
       u"\u89E3\u9664\u3059\u308B(&U)"},
      {u"lblBlankCellTolerance", u"\u8AAD\u307F\u98DB\u3070\u3059\u7A7A\u767D\u30BB\u30EB\u306E\u6570(&B):"},
      {u"cmdCancel", u"\u30AD\u30E3\u30F3\u30BB\u30EB"},
  };
  return texts;
}

inline const Texts& japanese_progress() {
  static const Texts texts{
      {u"", u"\u7FFB\u8A33\u306E\u6E96\u5099\u4E2D"},
      {u"cmdCancel", u"\u30AD\u30E3\u30F3\u30BB\u30EB"},
  };
  return texts;
}

// Puts the texts in, and the font that shows them on a Japanese system.
inline void translate(Form& form, const Texts& texts) {
  constexpr unsigned kJapanese = 932;
  constexpr std::int32_t kPoints = 9;
  for (Control* control : form.controls()) {
    control->font(locale_font({u"", kPoints, 1}, kJapanese));
    const auto text = texts.find(control->name());
    if (text != texts.end() && !control->Caption().empty()) control->Caption(text->second);
  }
  if (const auto text = texts.find(u""); text != texts.end()) form.Caption(text->second);
}

}  // namespace kavo::test
