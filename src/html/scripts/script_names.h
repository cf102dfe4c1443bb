// The names that belong together: a server page, its protected page and its script file.
#pragma once

#include <string>

namespace kavo {

struct ScriptNames {
  std::u16string page;    // C:\web\index.asp
  std::u16string html;    // C:\web\index_asp.htm
  std::u16string script;  // C:\web\index_asp.scr
};

// Fill in the names that are empty, when `html` or `script` is. Throw `failure` 6 for a name longer than 32,767.
void complete_from_page(ScriptNames& names);
void complete_from_html(ScriptNames& names);

}  // namespace kavo
