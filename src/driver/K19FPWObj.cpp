#include "driver/K19FPWObj.h"

#include <utility>

#include "driver/filter_table.h"
#include "driver/translation.h"
#include "interchange/office_interchange.h"
#include "office/office_converter.h"
#include "driver/wizard_run.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {

K19FPWObj::K19FPWObj() {
  if (!has_office_interchange()) bring_office_interchange(make_office_converter);
  create_filter_catalogue();
  try {
    BuildFilterTable();
  } catch (...) {
    release_filter_catalogue();
    throw;
  }
}

K19FPWObj::~K19FPWObj() {
  release_office_interchange();
  release_filter_catalogue();
}

std::int32_t K19FPWObj::SingleFileWizard(std::u16string& sFilename, std::int32_t& nKAVO) {
  WizardOutcome outcome = run_single_file_wizard({sFilename, nKAVO, quiet_ != 0}, observer_);
  if (outcome.files) produced_ = std::move(*outcome.files);
  return outcome.result;
}

std::int32_t K19FPWObj::PreProcess(std::u16string& sFilename) {
  produced_.clear();
  PreparationBatch single;
  PreparationResult prepared = prepare_document({sFilename}, single, observer_);
  produced_ = std::move(prepared.files);
  return prepared.result;
}

std::u16string K19FPWObj::GetFile(std::int32_t nCount) const {
  if (nCount >= GetFileCount()) return u"";
  if (nCount < 0) throw failure(FailureNumber::kSubscriptOutOfRange, u"Subscript out of range");
  return produced_[static_cast<std::size_t>(nCount)].file_name;
}

std::int32_t K19FPWObj::CreateTranslation(std::u16string& sTUD, std::u16string& sTarget, std::int32_t& nPreview,
                                          std::int32_t& nHighlight) {
  const TranslationRequest request{.tud = sTUD, .target = sTarget, .preview = nPreview, .highlight = nHighlight};
  try {
    const TranslationResult result = create_translation(request, observer_);
    if (result.error == kNoError) sTarget = result.target;
    return report(result);
  } catch (const failure& reason) {
    produced_.clear();
    last_error_ = reason.description();
    throw;
  } catch (const interruption& stop) {
    produced_.clear();
    last_error_ = as_failure(stop).description();
    throw;
  }
}

std::int32_t K19FPWObj::report(const TranslationResult& result) {
  last_error_.clear();
  if (result.error == kNoError) return kNoError;
  produced_.clear();
  last_error_ = translation_error_text(result);
  if (quiet_ == 0) ports().desktop->message_box(last_error_, u"KAVO", MessageIcon::kExclamation);
  return result.error;
}

}  // namespace kavo
