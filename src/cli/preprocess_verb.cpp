// kavo preprocess: what a host does with the automation object, one document after the other. The MIF documents of a
// folder are one batch, as their side files are.
#include "cli/prepared_documents.h"
#include "cli/verb.h"
#include "driver/K19FPWObj.h"
#include "workflow/page_guard.h"

namespace kavo {
namespace {

class Preprocess final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_flag("--overwrite", overwrite_, "Replace a page and a script file that somebody may have worked on");
  }
  void start() override {
    driver_.emplace();
    driver_->QuietMode(1);
    driver_->batch(documents_among(files));
  }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (const auto left_out = outcome_of_side_file(file)) return *left_out;
    if (!overwrite_) refuse_work_beside_prepared_page(file);
    Outcome outcome;
    driver_->observe({[&](std::u16string_view, int percent) { progress(static_cast<std::int16_t>(percent)); },
                      [&](const Message& message) { outcome.messages.push_back(message); }});
    std::u16string name = file;
    outcome.result = driver_->PreProcess(name);
    driver_->observe({});
    if (outcome.result != 0) outcome.ending = Outcome::kFailed;
    for (const ProducedFile& produced : driver_->produced_files())
      outcome.produced.push_back({produced.file_name, produced.file_type});
    return outcome;
  }

 private:
  bool overwrite_ = false;
  std::optional<K19FPWObj> driver_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "preprocess", "Prepare documents for translation and list the files that the suite's filters take",
     "kavo preprocess index.asp manual.mif", make_verb<Preprocess>},
};

}  // namespace

std::span<const VerbEntry> preprocess_verbs() { return kVerbs; }

}  // namespace kavo
