// The coding of a page and of its script file. They are one document for its author, so what the page declares applies
// to both, wherever the declaration is.
#pragma once

#include "formats/html/charset.h"
#include "suite/filters/filter.h"

namespace kavo {

// What the author's page declares. When that page is unknown, what `beginning` declares, which is the document's own.
// Throws `failure` when the page exists but cannot be read.
html::PageCoding page_coding_of(const ConversionSettings& settings, std::string_view beginning);

// "asp" for a page "index.asp" and for its parts "index_asp.htm" and "index_asp.scr".
std::string extension_of_page(const ConversionSettings& settings);

}  // namespace kavo
