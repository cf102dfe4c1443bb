// The MIF filter ("K19MIF"): a segment for each paragraph and text line of a FrameMaker MIF document.
//
// Paragraphs count wherever they are: in text flows of all kinds of pages, in table cells and titles, in footnotes, in
// the library's own side files. Fonts, markers, cross-references, variables, anchored tables and frames, footnote
// references, conditions and elements are codes of their segment. A translation must keep anchors and elements. The
// texts of markers, of reference and variable formats and of number formats are not in paragraphs: the library's MIF
// operations carry them in side files. Catalogues, object data and everything else stay as they are.
//
// A changed segment is written as few strings and codes as possible in the first of its lines; the layout program
// breaks the lines again. A document keeps its coding; up to version 7 it can hold the characters of the format's own
// Western set or, when it is an Asian one, those of its code page. A segment's colour is set in the fonts around and
// inside it; the four colours are added to the document's catalogue.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_mif_filter();

}  // namespace kavo
