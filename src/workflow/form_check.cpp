#include "workflow/form_check.h"

#include "common/document_names.h"
#include "driver/translation.h"
#include "platform/failure.h"

namespace kavo {

std::optional<FileDifference> form_difference(const std::u16string& document,
                                              const std::u16string& bilingual_document) {
  std::u16string told;
  const RunObserver observer{{}, [&](const Message& message) { told += u": " + message.text; }};
  const TranslationResult rebuilt = create_translation({.tud = bilingual_document, .keeps_form = true}, observer);
  if (rebuilt.error != kNoError)
    throw failure(FailureNumber::kInvalidCall, translation_error_text(rebuilt) + told);
  return first_difference(translated_form_of(document), translated_form_of(rebuilt.target));
}

}  // namespace kavo
