#include "driver/prepare_and_convert.h"

namespace kavo {

ConvertedDocument prepare_and_convert(const PreparationRequest& request, PreparationBatch& batch,
                                      const RunLanguages& languages, const RunObserver& observer) {
  ConvertedDocument converted{.preparation = prepare_document(request, batch, observer), .conversion = {}};
  if (converted.preparation.result == 0)
    converted.conversion = convert_produced_files(converted.preparation.files, languages, request.document, observer);
  return converted;
}

}  // namespace kavo
