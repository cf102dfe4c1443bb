#include "office/libreoffice/rtf_frames.h"

#include <algorithm>

#include "common/block_reader.h"

namespace kavo {

FrameFate fate_of_frames(std::u16string_view rtf) {
  constexpr std::string_view kFrame = "\\shptxt", kComment = "\\annotation";
  bool has_frame = false, has_comment = false;
  BlockReader document(rtf);
  while (document.more()) {
    const std::string_view window = document.window();
    has_frame = has_frame || window.find(kFrame) != window.npos;
    has_comment = has_comment || window.find(kComment) != window.npos;
    // A word that the block cuts stays in the window.
    document.consume(window.size() - std::min(window.size(), kComment.size() - 1));
  }
  if (!has_frame) return FrameFate::kNone;
  return has_comment ? FrameFate::kLost : FrameFate::kNeedView;
}

}  // namespace kavo
