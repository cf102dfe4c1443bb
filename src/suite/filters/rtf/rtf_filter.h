// The RTF filter ("K19RTF"): a segment for each paragraph of an RTF document.
//
// Text counts in the body, headers, footers, notes, annotations, text boxes, index entries, form fields and the
// document's information (title, subject, keywords, comments). Formatting that a reader sees is a pair of codes around
// what differs from most of the paragraph. Fields are codes, and a link's text is between its codes. Notes, pictures
// and objects are codes that a translation must keep.
//
// A changed segment is written in the character sets of its fonts, in a font with the target language's character set,
// or as \uN. The language of text becomes the target's. For right-to-left languages the direction of paragraphs and
// their text changes. Fonts are replaced by the user's map. A segment's colour is set for its characters; the four
// colours are added to the document's table.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_rtf_filter();

}  // namespace kavo
