// Prepares a document and makes bilingual documents of the files produced.
#pragma once

#include "driver/filter_run.h"
#include "driver/preparation.h"

namespace kavo {

struct ConvertedDocument {
  PreparationResult preparation;  // its files hold the names of their bilingual documents
  FilterRun conversion;           // not begun when the preparation failed
  bool is_done() const { return preparation.result == 0 && conversion.result == 0; }
};

// Needs the thread's filter catalogue, that is, a living K19FPWObj. Throws `interruption` when the user interrupts.
ConvertedDocument prepare_and_convert(const PreparationRequest& request, PreparationBatch& batch,
                                      const RunLanguages& languages, const RunObserver& observer);

}  // namespace kavo
