// What makes a document ready for the suite's filters: scripts and hidden texts go into side files, the tags of a page
// are repaired. post_process.h is the way back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/document_kind.h"
#include "driver/page_origin.h"
#include "driver/produced_file.h"
#include "driver/run_observer.h"

namespace kavo {

// The documents that are prepared one after the other. MIF documents of one folder share its side files: the first of
// them that can be prepared collects the hidden texts of all, the others produce themselves alone. Without documents
// each preparation stands for itself.
class PreparationBatch {
 public:
  PreparationBatch() = default;
  explicit PreparationBatch(std::vector<std::u16string> documents) : documents_(std::move(documents)) {}

  // The MIF documents whose hidden texts the preparation of `document` collects; none when it only produces itself.
  std::vector<std::u16string> book_of(const std::u16string& document) const;
  // The side files of the folder of `document` hold the texts of its book.
  void add_side_files_of(const std::u16string& document);

 private:
  std::vector<std::u16string> documents_;
  std::vector<std::u16string> folders_with_sides_;
};

struct PreparationRequest {
  std::u16string document;
  std::optional<std::u16string> html_tags = {};  // the validator's table, its own without
  std::optional<DocumentKind> kind = {};         // what FileTypeOf() says, without
  bool repairs = true;                           // the tags of a page; never those of a fragment
};

// For the command: any page that it knows, repaired when the user has it so.
PreparationRequest command_request(const std::u16string& document);
// Whether pages are repaired, as stored. Writing throws `failure` when it cannot be stored.
bool repairs_pages();
void store_repairs_pages(bool value);

struct PreparationResult {
  // 0 done; 3 when a page could not be prepared, 4 when a MIF document could not, or was in use. The observer knows
  // why.
  std::int32_t result = 0;
  std::vector<ProducedFile> files;  // none after a failure; the document alone when its type needs no preparation
  PageOrigin origin;                // of a page
};

// Prepares one document as one run: a preparation that fails leaves every file as it was, but for the backup of a MIF
// document. A type that needs no preparation is not even opened. Throws `interruption` when the user interrupts.
PreparationResult prepare_document(const PreparationRequest& request, PreparationBatch& batch,
                                   const RunObserver& observer);

}  // namespace kavo
