// kavo wizard: asks for the document, the memory and the languages, then prepares and converts the document. Also holds
// the verb that the wizard's editor button starts.
#include <functional>

#include "cli/verb.h"
#include "common/path_parts.h"
#include "driver/K19FPWObj.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/string_table.h"
#include "suite/components/editor_launcher.h"
#include "ui/frmProgress.h"
#include "ui/system_presenter.h"

namespace kavo {
namespace {

constexpr std::int32_t kTudDocument = -1;
constexpr std::int32_t kCancelled = 1;

class Wizard final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("FILE", file_, "The document that the wizard offers")->type_name("");
  }
  void start() override {
    form_presenter(&system_presenter());
    driver_.emplace();
    // The command reports a failure as its outcome, so no message box repeats it.
    driver_->QuietMode(1);
  }
  Outcome run(const std::u16string&, const ProgressEvent::Handler& progress) override {
    std::u16string file = file_.empty() ? u"" : ports().files->absolute(path_from_host(file_));
    if (!file.empty() && !ports().files->info(file))
      throw failure(FailureNumber::kFileNotFound, to_utf16(file_ + ": there is no such file"));
    Outcome outcome;
    const auto show = [&](TextRow step, std::u16string_view name, int percent) {
      tell_step(to_utf8(step.text) + ' ' + to_utf8(file_name_of(name)));
      progress(static_cast<std::int16_t>(percent));
    };
    driver_->observe({std::bind_front(show, text::kPreparing),
                      [&](const Message& message) { outcome.messages.push_back(message); },
                      std::bind_front(show, text::kConverting)});
    std::int32_t bits = 0;
    outcome.result = driver_->SingleFileWizard(file, bits);
    driver_->observe({});
    if (outcome.result != 0) outcome.ending = Outcome::kFailed;
    if (outcome.result == kCancelled) outcome.messages.push_back({u"cancelled"});
    for (const ProducedFile& produced : driver_->produced_files())
      if (!produced.tud_name.empty()) outcome.produced.push_back({produced.tud_name, kTudDocument});
    return outcome;
  }

 private:
  std::string file_;
  std::optional<K19FPWObj> driver_;
};

// Starts only the editor. The wizard's button uses this verb; people do not type it. A failure is shown in a window,
// because a console would close before it can be read.
class NewWork final : public Verb {
 public:
  Outcome run(const std::u16string&, const ProgressEvent::Handler&) override {
    Outcome outcome;
    try {
      start_editor({});
    } catch (const failure& reason) {
      ports().desktop->message_box(reason.description(), u"KAVO", MessageIcon::kExclamation);
      outcome.ending = Outcome::kFailed;
      outcome.messages.push_back({u"the editor was not started"});
    }
    return outcome;
  }
};

constexpr VerbEntry kVerbs[] = {
    {"", "wizard", "Ask for a document and its languages, and prepare it for translation", "kavo wizard index.asp",
     make_verb<Wizard>, false},
    {"", "NW", "Start the editor without a document", "kavo NW", make_verb<NewWork>, false, false},
};

}  // namespace

std::span<const VerbEntry> wizard_verbs() { return kVerbs; }

}  // namespace kavo
