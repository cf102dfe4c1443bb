#include "office/clsPPTUtil.h"

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "office/existing_file.h"

namespace kavo {
namespace {

constexpr OfficeProgram kPresentations = {.identifier = u"PowerPoint.Application",
                                          .collection = u"Presentations",
                                          .window_class = u"PP97FrameClass",
                                          .template_name = u"kavo.ppt",
                                          .open_takes_update_links = false,
                                          .quit_asks = false};

}  // namespace

clsPPTUtil::clsPPTUtil() : session_(kPresentations) {}

void clsPPTUtil::PPTFile(std::u16string_view value) {
  xml_file_ = xml_name_of(value);
  ppt_file_ = value;
}

void clsPPTUtil::XMLFile(std::u16string_view value) {
  ppt_file_ = office_name_of(value);
  xml_file_ = value;
}

std::int32_t clsPPTUtil::PPT2XML() {
  if (!session_.reach() || !is_existing_file(ppt_file_)) return 1;
  const clsCommon common;
  if (common.FileExists(xml_file_)) common.DeleteFile(xml_file_);
  // The program itself saves the presentation once, so that the macro reads what this release makes of the file.
  ObjectRef presentation = session_.open_file(by_reference(ppt_file_), false);
  session_.put(presentation, u"Saved", false);
  session_.call(presentation, u"Save");
  session_.call(presentation, u"Close");
  presentation = session_.open_file(by_reference(ppt_file_), false);
  session_.errors().clear();
  session_.run_macro(u"KAVO.PPT!ExportPresentation", ppt_file_ + u".kavo", presentation);
  session_.call(presentation, u"Close");
  return session_.errors().number() == 0 ? 0 : 1;
}

std::int32_t clsPPTUtil::XML2PPT() {
  if (!session_.reach() || !is_existing_file(xml_file_) || !is_existing_file(ppt_file_)) return 1;
  session_.errors().clear();
  const ObjectRef presentation = session_.open({by_value(ppt_file_)});
  session_.run_macro(u"KAVO.PPT!ImportPresentation", ppt_file_ + u".kavo", presentation);
  session_.call(presentation, u"Save");
  session_.call(presentation, u"Close");
  return session_.errors().number() == 0 ? 0 : 1;
}

}  // namespace kavo
