// kavo rebuild: the translated document of a bilingual one.
#include "cli/verb.h"
#include "driver/K19FPWObj.h"
#include "driver/file_types.h"
#include "driver/translation.h"
#include "driver/tud_name.h"
#include "platform/files.h"

namespace kavo {
namespace {

// Any multiple of 256: the overwrite flag without a preview.
constexpr std::int32_t kOverwrite = -256;

class Rebuild final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--output", output_, "The document to write (else SOURCE_LANGUAGE.EXTENSION beside the source)")
        ->type_name("FILE");
    app.add_flag("--overwrite", overwrite_, "Replace a document that is there");
    app.add_flag("--highlight", highlight_, "Colour the texts by their status: untranslated, fuzzy, 100 %, translated");
  }
  void check_usage(std::size_t file_count) override {
    if (!output_.empty() && file_count > 1) throw CLI::ValidationError("--output", "goes with one FILE only");
  }
  void start() override { driver_.emplace(); }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    Outcome outcome;
    if (TudName(file).is_taken_along()) {
      outcome.messages.push_back({u"left out, the document that it belongs to takes it along"});
      return outcome;
    }
    const RunObserver observer{[&](std::u16string_view, int percent) { progress(static_cast<std::int16_t>(percent)); },
                               [&](const Message& message) { outcome.messages.push_back(message); }};
    const TranslationRequest request{.tud = file,
                                     .preview = overwrite_ ? kOverwrite : 0,
                                     .highlight = highlight_ ? 1 : 0,
                                     .output = path_from_host(output_),
                                     .keeps_existing = !overwrite_};
    const TranslationResult result = create_translation(request, observer);
    outcome.result = result.error;
    if (result.error == kNoError) {
      outcome.produced.push_back({result.target, FileTypeOf(result.target)});
    } else {
      outcome.ending = Outcome::kFailed;
      outcome.messages.insert(outcome.messages.begin(), {translation_error_text(result)});
    }
    return outcome;
  }

 private:
  std::string output_;
  bool overwrite_ = false;
  bool highlight_ = false;
  std::optional<K19FPWObj> driver_;  // for the suite's filters
};

constexpr VerbEntry kVerbs[] = {
    {"", "rebuild", "Rebuild the translated documents of bilingual documents", "kavo rebuild index_asp_htm_FR.tud",
     make_verb<Rebuild>},
};

}  // namespace

std::span<const VerbEntry> rebuild_verbs() { return kVerbs; }

}  // namespace kavo
