#include "common/tud_names.h"

#include "common/clsCommon.h"

namespace kavo {

std::u16string tud_name_of(std::u16string_view document, std::u16string_view target_language) {
  const clsCommon common;
  return common.strParseFileName(document, 0) + common.strParseFileName(document, 1) + u"_" +
         common.strParseFileName(document, 2) + u"_" + std::u16string(target_language) + u".tud";
}

std::u16string skeleton_name_of(std::u16string_view tud) { return std::u16string(tud) + u".skl"; }

}  // namespace kavo
