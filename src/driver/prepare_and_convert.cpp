#include "driver/prepare_and_convert.h"

#include "common/file_type.h"
#include "driver/page_coding_report.h"
#include "platform/code_page.h"
#include "platform/ports.h"

namespace kavo {

ConvertedDocument prepare_and_convert(const PreparationRequest& request, PreparationBatch& batch,
                                      const RunLanguages& languages, const RunObserver& observer) {
  ConvertedDocument converted{.preparation = prepare_document(request, batch, observer), .conversion = {}};
  if (converted.preparation.result != 0) return converted;
  const std::int32_t type = request.kind ? request.kind->type : FileTypeOf(request.document);
  if (file_type_row(type).preparation == Preparation::kScripts)
    report_page_coding(request.document,
                       languages.source_code_page != 0 ? static_cast<unsigned>(languages.source_code_page)
                                                       : ports().code_page->number(),
                       observer);
  converted.conversion = convert_produced_files(converted.preparation.files, languages, request.document, observer);
  return converted;
}

}  // namespace kavo
