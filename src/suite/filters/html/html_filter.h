// The HTML filter ("K19HTM"): a segment for each paragraph and for each attribute that people read.
//
// A paragraph is what stands between block elements; inline elements, comments and server code (or the comment that
// stands for it) are its codes, of which server code must stay. Attributes: alt, title, placeholder, label, summary,
// abbr, standby, aria-label and its like, the value of button fields, the content of the descriptions and keywords of
// the page. Scripts, style sheets, drawings, formulas and what says translate="no" are left alone.
//
// Texts are shown as browsers show them, references decoded and white space collapsed outside preformatted elements.
// A translation is written in the page's coding; characters that it lacks become references. The declared coding of the
// page and the language of its root element are written anew when they change. A segment's colour is a font element
// around it, where one may stand.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_html_filter();

}  // namespace kavo
