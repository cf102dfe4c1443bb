// Finds the codings that the scripts of a page declare: in directives of ASP and JSP, and in headers that they send.
#pragma once

#include <string_view>
#include <vector>

#include "formats/html/charset.h"

namespace kavo::html {

// Appends what the server blocks of `page` declare, in order. A call with a literal counts wherever it is in the
// program.
void add_script_declarations(std::string_view page, script::Language server, std::vector<CharsetDeclaration>& found);

// True for a declaration that only a script can make.
bool is_script_source(CharsetSource source);

}  // namespace kavo::html
