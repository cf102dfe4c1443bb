// The preparation makes a document ready for the suite's filters: scripts and hidden texts go into side files, and the
// tags of a page are repaired. post_process.h is the way back.
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

// The documents of one call. The MIF documents of a folder share its side files: the first one that can be prepared
// collects the hidden texts of all, and the others produce only themselves. A batch without documents prepares each
// document for itself.
class PreparationBatch {
 public:
  PreparationBatch() = default;
  explicit PreparationBatch(std::vector<std::u16string> documents) : documents_(std::move(documents)) {}

  // The MIF documents whose hidden texts the preparation of `document` collects. Empty when it produces only itself.
  std::vector<std::u16string> book_of(const std::u16string& document) const;
  // Records that the side files in the folder of `document` hold the texts of its MIF documents.
  void add_side_files_of(const std::u16string& document);

 private:
  std::vector<std::u16string> documents_;
  std::vector<std::u16string> folders_with_sides_;
};

struct PreparationRequest {
  std::u16string document;
  std::optional<std::u16string> html_tags = {};  // the validator's table; the default one if not set
  std::optional<DocumentKind> kind = {};         // what FileTypeOf() says if not set
  bool repairs = true;                           // whether a page's tags are repaired; a fragment's never are
  bool keeps_branches = false;                   // whether repairs stay in their branch of a script's condition
};

// The command's request for a document: pages of any name it knows, repaired unless the user has switched that off.
PreparationRequest command_request(const std::u16string& document);
// The user's stored choice whether pages are repaired. Storing it throws `failure` when the registry refuses.
bool repairs_pages();
void store_repairs_pages(bool value);

struct PreparationResult {
  // 0 done, 3 when a page could not be prepared, 4 when a MIF document could not be prepared or was in use. The
  // observer has received the reason.
  std::int32_t result = 0;
  std::vector<ProducedFile> files;  // none after a failure; the document alone when its type needs no preparation
  PageOrigin origin;                // of a page
};

// Prepares one document in a run of its own. A preparation that fails leaves every file as it was; only the backup of a
// MIF document stays. A document whose type needs no preparation is not even opened. Throws `interruption` when the
// user interrupts.
PreparationResult prepare_document(const PreparationRequest& request, PreparationBatch& batch,
                                   const RunObserver& observer);

}  // namespace kavo
