// kavo rebuild: the translated document of a bilingual one.
#include "cli/verb.h"
#include "common/tud_names.h"
#include "driver/K19FPWObj.h"
#include "driver/companions.h"
#include "driver/file_types.h"
#include "driver/translation.h"
#include "driver/tud_name.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/language_tags.h"

namespace kavo {
namespace {

// Any multiple of 256: the overwrite flag without a preview.
constexpr std::int32_t kOverwrite = -256;

// "a, b and c".
std::u16string listed(const std::vector<std::u16string>& names) {
  std::u16string list;
  for (std::size_t i = 0; i < names.size(); ++i)
    list += (i == 0 ? u"" : i + 1 == names.size() ? u" and " : u", ") + names[i];
  return list;
}

// The document, its companions and their skeletons, as their folder names them; those that are there.
std::vector<std::u16string> documents_and_skeletons(const std::u16string& tud) {
  std::vector<std::u16string> documents = companions_of(TudName(tud));
  documents.insert(documents.begin(), tud);
  std::vector<std::u16string> names;
  for (const std::u16string& document : documents)
    for (const std::u16string& file : {document, skeleton_name_of(document)})
      for (const std::u16string& name : ports().files->find(file)) names.push_back(name);
  return names;
}

// Names have codes of the suite: a tag that means the same is none to the way back.
bool is_code(std::u16string_view text) {
  const LanguageRow* const language = find_language(text);
  return language != nullptr && equal_ignoring_ascii_case(language->code, text);
}

// Without a language that the suite knows, no scripts, hidden texts or objects are put back. Documents that were
// prepared before the command refused such languages are still about. Throws `failure` 5.
void refuse_unknown_language(const std::u16string& tud) {
  const TudName name(tud);
  const std::u16string& code = name.language();
  if (!has_way_back(name) || is_code(code)) return;
  const std::vector<const LanguageRow*> near = nearest_languages(code);
  const std::u16string right = std::u16string(near.empty() ? u"FR" : near[0]->code);
  throw failure(FailureNumber::kInvalidCall,
                u"the name gives the language " + code + u", which the suite does not know" +
                    (near.empty() ? u"" : u" (the nearest is " + right + u", " + std::u16string(near[0]->name) + u")") +
                    u". The translated document would be incomplete, so nothing is written. To repair it, put the "
                    u"right code, such as " +
                    right + u", in the place of " + code + u": in the names of " +
                    listed(documents_and_skeletons(tud)) + u", and inside the .tud files in target-language");
}

// Throws `failure` 53.
void refuse_missing_companions(const std::u16string& tud) {
  std::vector<std::u16string> missing = missing_companions(TudName(tud));
  if (missing.empty()) return;
  for (std::u16string& file : missing) file = to_utf16(path_to_host(file));
  throw failure(FailureNumber::kFileNotFound,
                u"files that belong to the document are missing: " + listed(missing) +
                    u". The translated document would be incomplete, so nothing is written. Put them there, bilingual "
                    u"documents with their skeletons (.skl)");
}

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
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    Outcome outcome;
    if (TudName(file).is_taken_along()) {
      outcome.messages.push_back({u"left out, the document that it belongs to takes it along"});
      return outcome;
    }
    refuse_unknown_language(file);
    refuse_missing_companions(file);
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
