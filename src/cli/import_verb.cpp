// kavo import: the translations that an editor handed back.
#include "cli/counted.h"
#include "cli/verb.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "suite/document/xliff_package.h"
#include "workflow/translation_import.h"
#include "workflow/work_folder.h"

namespace kavo {
namespace {

// Takes translations over from what an editor handed back.
class Import final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--to", to_, "The bilingual document that takes the translations")->required()->type_name("TUD");
  }
  void start() override { import_.emplace(path_from_host(to_)); }
  std::u16string workplace(const std::u16string& file) const override {
    return file.empty() ? u"" : path_from_host(to_);
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    Outcome outcome;
    const TranslationImport::Counts counts = take(file, outcome.messages, event);
    outcome.details["taken"] = counts.taken;
    outcome.details["refused"] = counts.refused;
    outcome.lines.push_back(counted(counts.taken, "translation") + " taken over, " + std::to_string(counts.refused) +
                            " refused");
    if (counts.refused != 0) outcome.ending = Outcome::kDifference;
    outcome.produced.push_back({import_->document().path(), kBilingualDocument});
    return outcome;
  }

 private:
  TranslationImport::Counts take(const std::u16string& file, MessageList& messages, ProgressEvent& progress) {
    if (!is_package(file)) return import_->take(file, messages, &progress);
    const WorkFolder folder;
    for (const std::u16string& document : unpack_documents(file, folder.make("package")))
      if (import_->difference(header_of(document)).empty()) return import_->take(document, messages, &progress);
    throw failure(FailureNumber::kInvalidCall,
                  to_utf16("none of the documents in it belongs to " + path_to_host(import_->document().path())));
  }

  std::string to_;
  std::optional<TranslationImport> import_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "import", "Take translations over from what an editor handed back",
     "kavo import index.fr.xlf --to index_asp_htm_FR.tud", make_verb<Import>},
};

}  // namespace

std::span<const VerbEntry> import_verbs() { return kVerbs; }

}  // namespace kavo
