// The HTML filter ("K19HTM"): a segment for each paragraph and for each attribute that people read.
//
// A paragraph is what is between block elements. Inline elements, comments and server code (or the comment that stands
// for it) are its codes; a translation must keep those of server code. The attributes are alt, title, placeholder,
// label, summary, abbr, standby, aria-label and the like, the value of buttons, and the page's description and
// keywords. Scripts, style sheets, drawings, formulas and elements with translate="no" are left alone.
//
// Texts are shown as browsers show them, references decoded and white space collapsed outside preformatted elements. A
// translation is written in the page's coding; characters that it lacks become references. The declared coding of the
// page and the language of its root element are rewritten when they change. A segment's colour becomes a font element
// around it, where one is allowed.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_html_filter();

}  // namespace kavo
