// The coding of a page and of its script file, which are one document of their author: what the page declares governs
// both, wherever it stands.
#pragma once

#include "formats/html/charset.h"
#include "suite/filters/filter.h"

namespace kavo {

// What the author's page tells; of a document of unknown author what `beginning`, its own, tells. Throws `failure` when
// the page is there and cannot be read.
html::PageCoding page_coding_of(const ConversionSettings& settings, std::string_view beginning);

// "asp" of a page "index.asp", and of its parts "index_asp.htm" and "index_asp.scr".
std::string extension_of_page(const ConversionSettings& settings);

}  // namespace kavo
