// Writes text into XML documents.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// Appends UTF-8 text between tags. A carriage return is written as a reference, since parsers change a plain one.
void append_xml_text(std::string& xml, std::string_view text);
// The same inside double quotes, where tabs and line feeds need references, too.
void append_xml_attribute(std::string& xml, std::string_view text);

// A language code of the suite ("EN-US") as XML and XLIFF write it ("en-US"); "und" for a text that is not a code.
std::string bcp47_of(std::string_view suite_code);

}  // namespace kavo
