#include "driver/rtf_preparation.h"

#include "common/clsCommon.h"
#include "common/folder_run.h"
#include "common/pending_file.h"
#include "driver/tud_name.h"
#include "office/clsRTFUtil.h"
#include "office/rtf_extraction.h"
#include "office/rtf_insertion.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kavo {

std::u16string without_objects(const std::u16string& document, const std::u16string& tud, bool replaces_objects,
                               FolderRun& run) {
  if (!holds_objects(document) || holds_object_markers(document)) return run.path_to_read(document);
  const std::u16string copy = run.scratch_path(document.substr(clsCommon().strParseFileName(document, 0).size()));
  copy_file(document, copy);
  clsRTFUtil objects;
  objects.RTFFile(copy);
  objects.ObjFile(TudName(tud).file_name(1, u"obj", false));
  if (replaces_objects) objects.overwrite_object_file();
  if (objects.ExtractObjects() != 0) throw failure(FailureNumber::kInvalidCall, objects.ErrorList().back().text);
  return run.path_to_read(copy);
}

}  // namespace kavo
