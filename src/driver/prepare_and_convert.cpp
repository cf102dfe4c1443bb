#include "driver/prepare_and_convert.h"

#include <utility>

#include "common/file_type.h"
#include "common/folder_run.h"
#include "driver/page_coding_report.h"
#include "platform/code_page.h"
#include "platform/ports.h"

namespace kavo {

ConvertedDocument prepare_and_convert(const PreparationRequest& request, PreparationBatch& batch,
                                      const RunLanguages& languages, const RunObserver& observer) {
  return std::move(prepare_and_convert(request, batch, std::span(&languages, 1), observer).front());
}

std::vector<ConvertedDocument> prepare_and_convert(const PreparationRequest& request, PreparationBatch& batch,
                                                   std::span<const RunLanguages> languages,
                                                   const RunObserver& observer) {
  std::vector<ConvertedDocument> results(1);
  results.front().preparation = prepare_document(request, batch, observer);
  if (results.front().preparation.result != 0) return results;
  const std::int32_t type = request.kind ? request.kind->type : FileTypeOf(request.document);
  if (file_type_row(type).preparation == Preparation::kScripts) {
    const std::int32_t code_page = languages.front().source_code_page;
    report_page_coding(request.document,
                       code_page != 0 ? static_cast<unsigned>(code_page) : ports().code_page->number(), observer);
  }
  std::vector<ProducedFile> files = results.front().preparation.files;
  // Scratch files stay to its end, so that an Office document is converted once for all languages.
  FolderRun run(request.document, observer.report());
  for (const RunLanguages& each : languages) {
    if (&each != &languages.front()) results.emplace_back().preparation.files = files;
    std::vector<ProducedFile>& produced = results.back().preparation.files;
    results.back().conversion = convert_produced_files(produced, each, request.document, observer);
    if (results.back().conversion.result != 0) break;
    for (std::size_t i = 0; i < files.size(); ++i) files[i].form = produced[i].form;
  }
  run.commit();
  return results;
}

}  // namespace kavo
