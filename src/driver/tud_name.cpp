#include "driver/tud_name.h"

#include <algorithm>

#include "common/document_names.h"
#include "common/path_parts.h"
#include "driver/document_files.h"
#include "platform/unicode.h"

namespace kavo {

TudName::TudName(std::u16string_view path) : folder_(folder_of(path)), base_(stem_of(path)) {
  std::u16string_view rest = base_;
  std::size_t index = parts_.size() - 1;
  for (; index > 0; --index) {
    const std::size_t separator = rest.rfind(u'_');
    if (separator == rest.npos) break;
    parts_[index] = rest.substr(separator + 1);
    rest = rest.substr(0, separator);
  }
  parts_[index] = rest;
  first_part_ = index;
}

std::u16string TudName::file_name(std::size_t last_part, std::u16string_view extension, bool with_language) const {
  // An empty first part counts, too: _b_mif_FR.tud is the document of _b.mif.
  std::u16string joined;
  for (std::size_t i = first_part_; i <= last_part; ++i) {
    if (i != first_part_) joined += u'_';
    joined += parts_[i];
  }
  std::u16string name = folder_ + joined;
  if (with_language) name += u"_" + language();
  name += u'.';
  name += extension;
  return name;
}

std::u16string TudName::script_tud() const {
  return tud_name_of(folder_ + parts_[0] + u"_" + parts_[1] + u".SCR", language());
}

bool TudName::is_taken_along() const {
  if (equal_ignoring_ascii_case(prepared_type(), u"SCR"))
    return is_file(tud_name_of(folder_ + parts_[0] + u"_" + parts_[1] + u".HTM", language()));
  return std::ranges::any_of(kMifSides, [&](std::u16string_view side) {
    return equal_ignoring_ascii_case(base_, stem_of(mif_side_tud(u"", side, language())));
  });
}

}  // namespace kavo
