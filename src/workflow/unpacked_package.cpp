#include "workflow/unpacked_package.h"

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "driver/companions.h"
#include "driver/document_files.h"
#include "driver/tud_name.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "suite/document/xliff_package.h"
#include "workflow/document_set.h"

namespace kavo {

UnpackedPackage::UnpackedPackage(const std::u16string& package)
    : scratch_(folder_.make("package")), own_(folder_of(package)) {
  for (const std::u16string& document : unpack_documents(package, scratch_)) documents_.push_back(document);
  std::erase_if(documents_, [](const std::u16string& document) { return TudName(document).is_taken_along(); });
  // A package does not hold objects; their file is beside the package. So are the companions of a document that was
  // exported without them.
  for (const std::u16string& document : documents_) {
    const std::u16string own = own_ + document.substr(scratch_.size() + 1);
    std::vector<std::u16string> files{object_file_beside(own)};
    for (const std::u16string& companion : missing_companions(TudName(document)))
      for (const std::u16string& file : {companion, skeleton_name_of(companion)})
        files.push_back(own_ + file.substr(scratch_.size() + 1));
    for (const std::u16string& file : files)
      if (is_file(file)) copy_file(file, scratch_ + u"\\" + file.substr(own_.size()));
  }
}

std::u16string UnpackedPackage::with_own_folder(const std::u16string& text) const {
  const clsCommon common;
  const std::u16string core = common.SandR(text, scratch_ + u"\\", own_);
  return common.SandR(core, to_utf16(path_to_host(scratch_ + u"\\")), to_utf16(path_to_host(own_)));
}

}  // namespace kavo
