#include "driver/rtf_preparation.h"

#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "office/clsRTFUtil.h"
#include "office/rtf_extraction.h"
#include "office/rtf_insertion.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kavo {

std::u16string without_objects(const std::u16string& document, const std::u16string& object_file, bool replaces_objects,
                               FolderRun& run) {
  if (!holds_objects(document) || holds_object_markers(document)) return run.path_to_read(document);
  const std::u16string copy = run.scratch_path(file_name_of(document));
  if (copy != document) copy_file(document, copy);  // the form of a Word document is a scratch file itself
  clsRTFUtil objects;
  objects.RTFFile(copy);
  objects.ObjFile(object_file);
  if (replaces_objects) objects.overwrite_object_file();
  if (objects.ExtractObjects() != 0) throw failure(FailureNumber::kInvalidCall, objects.ErrorList().back().text);
  return run.path_to_read(copy);
}

}  // namespace kavo
