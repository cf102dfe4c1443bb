#include "driver/companions.h"

#include "driver/document_files.h"
#include "driver/file_types.h"

namespace kavo {
namespace {

std::int32_t prepared_type(const TudName& name) { return FileTypeOf(u"x." + name.prepared_type()); }

}  // namespace

std::vector<std::u16string> companions_of(const TudName& name) {
  std::vector<std::u16string> companions;
  switch (prepared_type(name)) {
    case kHtmlPage:
    case kServerPage:
      companions.push_back(name.script_tud());
      break;
    case kMifDocument:
      for (const std::u16string_view side : kMifSides) companions.push_back(mif_side_tud(name, side));
      break;
    case kPresentation:
    case kWorkbook:
      companions.push_back(name.file_name(1, name.prepared_type(), false));
      break;
    default:
      break;
  }
  return companions;
}

std::vector<std::u16string> missing_companions(const TudName& name) {
  std::vector<std::u16string> missing = companions_of(name);
  std::erase_if(missing, [](const std::u16string& file) { return is_file(file); });
  return missing;
}

bool has_way_back(const TudName& name) {
  const std::int32_t type = prepared_type(name);
  return type == kWordDocument || type == kRtfDocument || !companions_of(name).empty();
}

}  // namespace kavo
