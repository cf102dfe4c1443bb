#include "driver/wizard_run.h"

#include <algorithm>

#include "common/clsCommon.h"
#include "common/file_type.h"
#include "driver/document_files.h"
#include "driver/filter_table.h"
#include "driver/prepare_and_convert.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/program_folder.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"
#include "resources/string_table.h"
#include "ui/frmProgress.h"
#include "ui/frmWizard.h"

namespace kavo {
namespace {

enum WizardBits : std::int32_t { kEditorButton = 1, kEditorAfterFailure = 2, kOfferLastMemory = 4 };
enum WizardResult : std::int32_t { kDone = 0, kCancelled = 1, kUnknownType = 2, kPreparationFailed = 100 };

// The path of the editor launcher; "" when there is none.
std::u16string launcher_name() {
  const std::u16string name = program_folder() + u"\\K19Subst.exe";
  return clsCommon().FileExists(name) ? name : u"";
}

std::u16string in_quotes(std::u16string_view text) { return u"\"" + std::u16string(text) + u"\""; }

std::u16string memory_switch(std::u16string_view memory) { return u"/t" + in_quotes(memory); }

class WizardRun {
 public:
  WizardRun(const WizardRequest& request, const RunObserver& observer)
      : request_(request), observer_(observer), launcher_(launcher_name()) {}

  WizardOutcome run() {
    const std::int32_t result = ask_and_convert();
    if (!launcher_.empty()) {
      if (result == kDone)
        start_editor(in_quotes(tud_) + (memory_.empty() ? u"" : u" " + memory_switch(memory_)));
      else if (has(kEditorAfterFailure))
        // Without a last memory the switch has an empty name, deliberately: the launcher takes that for no memory.
        start_editor(has(kOfferLastMemory) ? memory_switch(last_memory_) : u"");
    }
    return {result, std::move(files_)};
  }

 private:
  bool has(WizardBits bit) const { return (request_.bits & bit) != 0; }

  std::int32_t ask_and_convert() {
    frmWizard form({FileTypeOf, has_filter_settings, show_filter_settings});
    form.cmdKAVO.Visible(has(kEditorButton));
    const std::u16string last_description = form.LastTM();
    last_memory_ = frmWizard::NameOfTM(last_description);
    if (has(kOfferLastMemory)) form.SetLastTM(last_description);
    if (const std::u16string_view file = trimmed(request_.file); is_file(file)) form.txtSourceFile.Text(file);
    form.show();
    if (form.Cancelled()) return kCancelled;
    memory_ = form.TM();
    return convert(form);
  }

  std::int32_t convert(const frmWizard& form) {
    const std::u16string file = form.txtSourceFile.Text();
    if (FileTypeOf(file) == kUnknownFile) {
      tell(text::kUnknownTypeText, file, u"", text::kUnknownTypeAdvice);
      return kUnknownType;
    }
    const Ending ending = run_beside_progress(form, file);
    if (ending.result != kDone && ending.result != kCancelled)
      tell(ending.what, ending.where, ending.why, text::kFileAdvice);
    return ending.result;
  }

  // How a run ended, and what to report when it failed.
  struct Ending {
    std::int32_t result = kDone;
    TextRow what{};
    std::u16string where{}, why{};
  };

  Ending run_beside_progress(const frmWizard& form, const std::u16string& file) {
    frmProgress progress;
    progress.show_beside();
    try {
      const RunObserver observer = observer_beside(progress);
      PreparationBatch batch;
      ConvertedDocument document =
          prepare_and_convert({file, form.HTMLTags()}, batch,
                              {form.morLang[0].LanguageCode(), form.morLang[1].LanguageCode(),
                               form.morLang[0].CharSetNumber(), form.morLang[1].CharSetNumber()},
                              observer);
      const std::vector<ProducedFile>& produced = files_.emplace(std::move(document.preparation.files));
      if (const std::int32_t preparation = document.preparation.result; preparation != 0)
        return {kPreparationFailed + preparation, text::kPreparationFailed, file, last_message_};
      const FilterRun& run = document.conversion;
      // The user may have cancelled during the last file, which a filter in another module does not notice.
      ports().desktop->process_messages();
      if (run.result != kDone) {
        const auto unconverted = std::ranges::find(produced, u"", &ProducedFile::tud_name);
        return {run.result, text::kConversionFailed, unconverted->file_name, run.reason};
      }
      tud_ = produced.front().tud_name;
      return {};
    } catch (const interruption&) {
      if (!progress.Cancelled()) throw;
      return {kCancelled};
    }
  }

  // The preparation is the first half of the progress, the conversion the second.
  RunObserver observer_beside(frmProgress& progress) {
    RunObserver observer;
    observer.progress = [&](std::u16string_view name, int percent) {
      progress.report(text::kPreparing, name, percent / 2);
      observer_.tell_progress(name, percent / 2);
    };
    observer.message = [&](const Message& message) {
      last_message_ = message.text;
      observer_.tell(message);
    };
    observer.converting = [&](std::u16string_view name, int percent) {
      progress.report(text::kConverting, name, 50 + percent / 2);
      observer_.tell_converting(name, 50 + percent / 2);
      // Lets the window be drawn and its button answer.
      ports().desktop->process_messages();
    };
    return observer;
  }

  // Reports what failed, where, why, and what to do.
  void tell(TextRow what, std::u16string_view where, std::u16string_view why, TextRow advice) const {
    const std::u16string reason = why.empty() ? u"" : formatted(u"\r\n{}", why);
    const std::u16string text = formatted(u"{}\r\n{}{}\r\n{}", what.text, path_to_host(where), reason, advice.text);
    observer_.tell({text});
    if (!request_.quiet)
      ports().desktop->message_box(clsCommon().SandR(text, u"\r\n", u"\r\n\r\n"), u"KAVO", MessageIcon::kExclamation);
  }

  void start_editor(const std::u16string& parameters) const {
    constexpr int kHighestFailure = 31;
    if (ports().shell->run(launcher_, parameters) <= kHighestFailure)
      tell(text::kEditorFailed, launcher_, u"", text::kEditorAdvice);
  }

  const WizardRequest& request_;
  const RunObserver& observer_;
  std::u16string launcher_;
  std::u16string memory_;       // chosen in the dialog, "" for none
  std::u16string last_memory_;  // the one used last
  std::u16string tud_;          // bilingual document of the first produced file
  std::u16string last_message_;
  std::optional<std::vector<ProducedFile>> files_;
};

}  // namespace

WizardOutcome run_single_file_wizard(const WizardRequest& request, const RunObserver& observer) {
  return WizardRun(request, observer).run();
}

}  // namespace kavo
