// kavo preprocess: does what a host does with the automation object, one document at a time. The MIF documents of a
// folder are one batch, because they share their side files.
#include "cli/outcome_observer.h"
#include "cli/prepared_documents.h"
#include "cli/verb.h"
#include "driver/preparation.h"
#include "workflow/page_guard.h"

namespace kavo {
namespace {

class Preprocess final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_flag("--overwrite", overwrite_, "Replace a page and a script file that somebody may have worked on");
    app.add_flag("--no-repair", no_repair_, "Do not repair the tags of pages");
  }
  void start() override { batch_ = PreparationBatch(documents_among(files)); }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (const auto left_out = outcome_of_side_file(file)) return *left_out;
    if (!overwrite_) refuse_work_beside_prepared_page(file);
    Outcome outcome;
    PreparationRequest request = command_request(file);
    request.repairs = request.repairs && !no_repair_;
    const PreparationResult prepared = prepare_document(request, batch_, outcome_observer(outcome, progress));
    outcome.result = prepared.result;
    if (outcome.result != 0) outcome.ending = Outcome::kFailed;
    for (const ProducedFile& produced : prepared.files)
      outcome.produced.push_back({produced.file_name, produced.file_type});
    return outcome;
  }

 private:
  bool overwrite_ = false;
  bool no_repair_ = false;
  PreparationBatch batch_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "preprocess", "Prepare documents for translation and list the files that the suite's filters take",
     "kavo preprocess index.asp manual.mif", make_verb<Preprocess>},
};

}  // namespace

std::span<const VerbEntry> preprocess_verbs() { return kVerbs; }

}  // namespace kavo
