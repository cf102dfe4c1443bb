// The coding of a page as its scripts declare it: directives of ASP and JSP, and what a script says to the server.
#pragma once

#include <string_view>
#include <vector>

#include "formats/html/charset.h"

namespace kavo::html {

// Appends what the server blocks of `page` declare, in their order. Of a call counts the literal, whatever becomes of it.
void add_script_declarations(std::string_view page, script::Language server, std::vector<CharsetDeclaration>& found);

// True for what only a script can declare.
bool is_script_source(CharsetSource source);

}  // namespace kavo::html
