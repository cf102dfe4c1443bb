// A package of bilingual documents, unpacked into a scratch folder for one run.
#pragma once

#include <string>
#include <vector>

#include "workflow/work_folder.h"

namespace kavo {

class UnpackedPackage {
 public:
  // Throws `failure` as unpack_documents() does, and when a scratch file cannot be written.
  explicit UnpackedPackage(const std::u16string& package);

  // The documents to rebuild; the others are their companions.
  const std::vector<std::u16string>& documents() const { return documents_; }
  // Replaces the names of scratch files in a message by those of files beside the package, which people know.
  std::u16string with_own_folder(const std::u16string& text) const;

 private:
  WorkFolder folder_;
  std::u16string scratch_;  // without "\" at its end, as the next
  std::u16string own_;
  std::vector<std::u16string> documents_;
};

}  // namespace kavo
