// The coding that the scripts of a page declare: by directives of ASP and JSP, and by what they send to the server.
#pragma once

#include <string_view>
#include <vector>

#include "formats/html/charset.h"

namespace kavo::html {

// Appends what the server blocks of `page` declare, in their order. A call counts by its literal, whatever the program
// does with it.
void add_script_declarations(std::string_view page, script::Language server, std::vector<CharsetDeclaration>& found);

// True for a declaration that only a script can make.
bool is_script_source(CharsetSource source);

}  // namespace kavo::html
