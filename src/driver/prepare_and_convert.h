// Prepares a document and makes bilingual documents of the files produced.
#pragma once

#include <span>
#include <vector>

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
// The same for several languages: one preparation, converted for each in turn, with one result for each. A failure in
// one ends the run; the results after it are missing.
std::vector<ConvertedDocument> prepare_and_convert(const PreparationRequest& request, PreparationBatch& batch,
                                                   std::span<const RunLanguages> languages,
                                                   const RunObserver& observer);

}  // namespace kavo
