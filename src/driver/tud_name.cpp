#include "driver/tud_name.h"

#include <algorithm>

#include "common/clsCommon.h"
#include "driver/document_files.h"
#include "platform/unicode.h"

namespace kavo {

TudName::TudName(std::u16string_view path)
    : folder_(clsCommon().strParseFileName(path, 0)), base_(clsCommon().strParseFileName(path, 1)) {
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
  // An empty first part is one too: _b_mif_FR.tud is the document of _b.mif.
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
  return folder_ + parts_[0] + u"_" + parts_[1] + u"_SCR_" + language() + u".tud";
}

bool TudName::is_taken_along() const {
  if (equal_ignoring_ascii_case(prepared_type(), u"SCR"))
    return is_file(folder_ + parts_[0] + u"_" + parts_[1] + u"_HTM_" + language() + u".tud");
  return std::ranges::any_of(kMifSides, [&](std::u16string_view side) {
    return equal_ignoring_ascii_case(base_, std::u16string(side) + u"_mif_" + language());
  });
}

bool is_mif_side_file(std::u16string_view path) {
  return std::ranges::any_of(kMifSides, [&](std::u16string_view side) {
    const std::u16string name = std::u16string(side) + u".mif";
    return path.size() >= name.size() && equal_ignoring_ascii_case(path.substr(path.size() - name.size()), name) &&
           (path.size() == name.size() || path[path.size() - name.size() - 1] == u'\\');
  });
}

std::u16string mif_side_file(const TudName& name, std::u16string_view side) {
  return name.folder() + std::u16string(side) + u".mif";
}

std::u16string mif_side_tud(const TudName& name, std::u16string_view side) {
  return name.folder() + std::u16string(side) + u"_mif_" + name.language() + u".tud";
}

std::u16string open_tag_name_of(std::u16string_view tud) {
  return clsCommon().strParseFileName(tud, 0) + clsCommon().strParseFileName(tud, 1) + u".otf";
}

}  // namespace kavo
