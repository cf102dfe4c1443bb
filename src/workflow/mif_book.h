// MIF documents of one folder that are prepared and rebuilt together. They share side files, so each is rebuilt from
// hidden texts that were collected from all of them, in the coding of one.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "driver/K19FPWObj.h"
#include "driver/prepare_and_convert.h"
#include "workflow/work_folder.h"

namespace kavo {

class MifBook {
 public:
  // Paths of documents of different names.
  explicit MifBook(std::vector<std::u16string> documents) : documents_(std::move(documents)) {}

  // Rebuilds one of the documents from its test translation. Returns a path in a scratch folder that lives as long as
  // the book. The first call prepares copies of all documents. Throws `failure`.
  std::u16string rebuild(K19FPWObj& driver, const std::u16string& document, const RunLanguages& languages);

 private:
  void prepare(const RunLanguages& languages);

  std::vector<std::u16string> documents_;
  WorkFolder folder_;
  bool is_prepared_ = false;
  std::map<std::u16string, std::u16string> bilingual_;  // by document; documents that cannot be prepared have none
};

// The document that a bilingual document is rebuilt to. Throws `failure`.
std::u16string rebuild_document(K19FPWObj& driver, const std::u16string& bilingual_document);

}  // namespace kavo
