// Finds out in which language a script of a page is written.
#pragma once

#include <optional>
#include <string_view>

#include "formats/script/token.h"

namespace kavo::script {

// The language with this name, as pages write it in capital or small letters: "VBScript", "jscript.encode",
// "javascript1.2", "text/javascript", "module", "java", "php". kUnknown for any other name.
Language language_of_name(std::string_view name);

// The language of the server blocks in a page that does not declare one, by the extension of the page's name (without
// "."): VBScript for "asp", Java for "jsp", PHP for "php" and similar extensions; kUnknown for others.
Language language_of_extension(std::string_view extension);

// The same, but VBScript where that returns kUnknown.
Language language_of_page(std::string_view extension);

// The value of the first attribute `name` of a tag or a directive ("<%@ ... %>", "<script ...>"). `name` is in small
// letters; the case in the tag does not matter.
std::optional<std::string_view> attribute_of(std::string_view tag, std::string_view name);

// The language that a page directive names, such as <%@ page language="java" %>; "<%@" may be missing. Returns
// `otherwise` when it names none.
Language language_of_directive(std::string_view directive, Language otherwise);

// What the start tag of a <script> element says about its content.
struct ScriptTag {
  Language language = Language::kUnknown;
  bool is_script = true;   // false for data and templates: type="application/json"
  bool on_server = false;  // runat="server"
};
// A tag that names no language gets `client`, or `server` when the script runs on the server.
ScriptTag read_script_tag(std::string_view tag, Language client, Language server);

}  // namespace kavo::script
