// What happens to the texts in frames when an RTF document is saved as a Word document: they are written only when the
// text has a layout, and only a view makes one.
#pragma once

#include <string_view>

namespace kavo {

enum class FrameFate {
  kNone,      // there are no frames
  kNeedView,  // they are written when the document is shown
  // They are not written: a view of a document that has comments, too, needs the parts of LibreOffice's user interface,
  // which an installation without one lacks, and ends LibreOffice.
  kLost,
};

// Throws `failure` when the document cannot be read.
FrameFate fate_of_frames(std::u16string_view rtf);

}  // namespace kavo
