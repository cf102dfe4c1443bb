#include "office/office_names.h"

#include "common/clsCommon.h"
#include "platform/case_fold.h"

namespace kavo {
namespace {

std::u16string folder_and_base(std::u16string_view path) {
  const clsCommon common;
  return common.strParseFileName(path, 0) + common.strParseFileName(path, 1);
}

}  // namespace

std::u16string rtf_name_of(std::u16string_view doc_file) { return folder_and_base(doc_file) + u"_doc.rtf"; }

std::u16string doc_name_of(std::u16string_view rtf_file) {
  constexpr std::u16string_view suffix = u"_DOC";
  const clsCommon common;
  std::u16string base = common.strParseFileName(rtf_file, 1);
  if (upper_case(base).ends_with(suffix)) base.erase(base.size() - suffix.size());
  return common.strParseFileName(rtf_file, 0) + base + u".doc";
}

std::u16string xml_name_of(std::u16string_view office_file) {
  return folder_and_base(office_file) + u"_" + clsCommon().strParseFileName(office_file, 2) + u".xml";
}

std::u16string office_name_of(std::u16string_view xml_file) {
  std::u16string name = folder_and_base(xml_file);
  if (name.size() >= 4) name[name.size() - 4] = u'.';
  return name;
}

bool is_existing_file(std::u16string_view path) { return !path.empty() && clsCommon().FileExists(path); }

}  // namespace kavo
