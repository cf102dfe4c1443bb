// Says whether a document type declaration puts a page into quirks mode, by the list of public identifiers in the HTML
// standard. Quirks mode matters here for one rule only: a table does not end a paragraph.
#pragma once

#include <string_view>

namespace kavo {

// `text` is "<!DOCTYPE ...>" as it stands in the page; `complete` is false when the page ended inside it.
bool doctype_means_quirks(std::string_view text, bool complete);

}  // namespace kavo
