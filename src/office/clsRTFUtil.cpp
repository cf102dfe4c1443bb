#include "office/clsRTFUtil.h"

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/same_file.h"
#include "office/rtf_extraction.h"
#include "office/rtf_insertion.h"
#include "platform/failure.h"

namespace kavo {

std::int32_t clsRTFUtil::ExtractObjects() {
  return run([this](const std::u16string& temporary_file) {
    RtfExtraction extraction(rtf_file_, temporary_file, obj_file_);
    extraction.run(progress_, overwrites_object_file_);
    object_count_ = extraction.count();
    return true;
  });
}

std::int32_t clsRTFUtil::InsertObjects() {
  return run([this](const std::u16string& temporary_file) {
    RtfInsertion insertion(rtf_file_, temporary_file, obj_file_);
    insertion.run(progress_, errors_);
    object_count_ = insertion.count();
    return insertion.missing() == 0;
  });
}

std::int32_t clsRTFUtil::run(const std::function<bool(const std::u16string&)>& work) {
  errors_.clear();
  object_count_ = 0;
  progress_.restart();
  if (rtf_file_.empty()) {
    errors_.push_back({u"No RTF file was given: set RTFFile first"});
    return 1;
  }
  try {
    make_object_file_name();
    const std::u16string temporary_file = rtf_file_ + u".kavo.tmp";
    if (is_same_file(rtf_file_, obj_file_) || is_same_file(temporary_file, obj_file_))
      throw failure(FailureNumber::kInvalidCall,
                    u"The object file must not be the document itself: give it another name");
    // Document and object file are one set, and the temporary file has one name for all runs.
    FolderRun run(rtf_file_);
    clsCommon().DeleteFile(temporary_file);
    const bool is_whole = work(temporary_file);
    run.commit();
    return is_whole ? 0 : 1;
  } catch (const failure& reason) {
    errors_.push_back({reason.description()});
    return 1;
  }
}

void clsRTFUtil::make_object_file_name() {
  if (!obj_file_.empty()) return;
  obj_file_ = object_file_of(rtf_file_);
}

}  // namespace kavo
