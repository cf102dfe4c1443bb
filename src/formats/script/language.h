// Which language a script of a page is written in.
#pragma once

#include <optional>
#include <string_view>

#include "formats/script/token.h"

namespace kavo::script {

// By a name as pages write it, in any case: "VBScript", "jscript.encode", "javascript1.2", "text/javascript", "module",
// "java", "php". kUnknown for another one.
Language language_of_name(std::string_view name);

// The language of the server blocks in a page that does not declare one, by the extension of the page's name (without
// "."): VBScript for "asp", Java for "jsp", PHP for "php" and its kin; kUnknown for others.
Language language_of_extension(std::string_view extension);

// The same, with VBScript for other extensions.
Language language_of_page(std::string_view extension);

// The value of the first attribute of a tag or a directive ("<%@ ... %>", "<script ...>") that is called so, in any
// case; `name` in small letters.
std::optional<std::string_view> attribute_of(std::string_view tag, std::string_view name);

// The language that a page directive names: <%@ page language="java" %>, with or without "<%@". `otherwise` when it
// names none.
Language language_of_directive(std::string_view directive, Language otherwise);

// What the start tag of a <script> element says about its content.
struct ScriptTag {
  Language language = Language::kUnknown;
  bool is_script = true;   // false for data and templates: type="application/json"
  bool on_server = false;  // runat="server"
};
// The language of a tag that names none is `client`, or `server` when the script runs on the server.
ScriptTag read_script_tag(std::string_view tag, Language client, Language server);

}  // namespace kavo::script
