// One run of CreateTranslation: rebuilds the document in its source's format from a translated bilingual document.
//
// A run that fails leaves every document as it was: an old target is replaced only by a complete new one
// (common/folder_run.h). The font settings outlive a failure, deliberately. They stay as they were set for the filter,
// so that users can see what it worked with.
#pragma once

#include <cstdint>
#include <string>

#include "driver/run_observer.h"
#include "driver/status_colours.h"

namespace kavo {

enum TranslationError : std::int32_t {
  kNoError = 0,
  kTudNotOpened = 1,
  kOpenTagNotSaved = 2,
  kNoSkeleton = 3,
  kNoMergeDetails = 4,
  kTargetNotCreated = 5,
  kNotPostProcessed = 6,
  kTargetInTheWay = 7,
};

struct TranslationRequest {
  std::u16string tud;
  std::u16string target{};     // the file to create; "" for the name that the document gives
  std::int32_t preview = 0;    // 1 or 2 opens the result; negative: an old target is deleted before the filter runs
  std::int32_t highlight = 0;  // not 0: segments are coloured by their status
  // In addition to the contract, for the command.
  std::u16string output{};        // where the finished document goes, whatever the intermediate files are called
  bool keeps_form = false;        // of an Office document: keep what is handed to the Office program beside it
  bool keeps_existing = false;    // fail rather than replace an existing document
  bool refuses_gaps = false;      // fail rather than make a document that lacks a script or hidden texts
  StatusColours unset_colours{};  // for statuses without a stored colour
};

struct TranslationResult {
  std::int32_t error = kNoError;
  std::u16string text;    // describes the error; "" for the standard text of its number
  std::u16string target;  // the file that was created
};

// The text that reports a failed run to people; "" for one that succeeded.
std::u16string translation_error_text(const TranslationResult& result);

// Rebuilds the document. A failure sets the error of the result, and the observer receives the reason. Throws what the
// document component raises, and `interruption` when the user interrupts. The thread needs a living K19FPWObj, which
// owns its filter catalogue.
TranslationResult create_translation(const TranslationRequest& request, const RunObserver& observer);

}  // namespace kavo
