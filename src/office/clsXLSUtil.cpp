#include "office/clsXLSUtil.h"

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "office/existing_file.h"
#include "office/frmExcelOptions.h"

namespace kavo {
namespace {

constexpr OfficeProgram kWorkbooks = {.identifier = u"Excel.Application",
                                      .collection = u"Workbooks",
                                      .window_class = u"XLMAIN",
                                      .template_name = u"kavo.xls",
                                      .open_takes_update_links = true,
                                      .quit_asks = true};

constexpr std::u16string_view kSecurity = u"AutomationSecurity";
constexpr std::int16_t kMacrosEnabled = 1;
constexpr std::int16_t kMacrosDisabled = 3;

}  // namespace

clsXLSUtil::clsXLSUtil() : session_(kWorkbooks) {}

void clsXLSUtil::XLSFile(std::u16string_view value) {
  xml_file_ = xml_name_of(value);
  xls_file_ = value;
}

void clsXLSUtil::XMLFile(std::u16string_view value) {
  xls_file_ = office_name_of(value);
  xml_file_ = value;
}

std::int32_t clsXLSUtil::XLS2XML() {
  if (!session_.reach() || !is_existing_file(xls_file_)) return 1;
  const clsCommon common;
  if (common.FileExists(xml_file_)) common.DeleteFile(xml_file_);
  session_.put(session_.application(), kSecurity, kMacrosDisabled);
  const ObjectRef workbook = session_.open_file(by_reference(xls_file_), false);
  session_.put(session_.application(), kSecurity, kMacrosEnabled);
  session_.put(workbook, u"Saved", false);
  session_.call(workbook, u"Save");
  session_.errors().clear();
  session_.run_macro(u"KAVO.XLS!ExportWorkbook", xls_file_ + u".kavo", workbook);
  session_.call(workbook, u"Close");
  return session_.errors().number() == 0 ? 0 : 1;
}

std::int32_t clsXLSUtil::XML2XLS() {
  if (!session_.reach() || !is_existing_file(xml_file_) || !is_existing_file(xls_file_)) return 1;
  session_.errors().clear();
  session_.put(session_.application(), kSecurity, kMacrosDisabled);
  const ObjectRef workbook = session_.open({by_value(xls_file_)});
  session_.put(session_.application(), kSecurity, kMacrosEnabled);
  // A failure to open is deliberately not counted here, because Save fails without a workbook.
  session_.errors().clear();
  session_.run_macro(u"KAVO.XLS!ImportWorkbook", xls_file_ + u".kavo", workbook);
  session_.call(workbook, u"Save");
  session_.call(workbook, u"Close");
  return session_.errors().number() == 0 ? 0 : 1;
}

void clsXLSUtil::DisplayOptions() { frmExcelOptions().show(); }

}  // namespace kavo
