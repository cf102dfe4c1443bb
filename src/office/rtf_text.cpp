#include "office/rtf_text.h"

#include "formats/rtf/signature.h"

namespace kavo {

BlockReader open_rtf(std::u16string_view path) {
  BlockReader document(path);
  rtf::refuse_other_formats(document);
  return document;
}

}  // namespace kavo
