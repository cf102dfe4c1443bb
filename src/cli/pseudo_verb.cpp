// kavo pseudo: a readable test translation.
#include "cli/folder_options.h"
#include "cli/verb.h"
#include "suite/document/pseudo_translation.h"

namespace kavo {
namespace {

// Fills every open segment with its own text, with accents and in brackets.
class Pseudo final : public Verb {
 public:
  void add_options(CLI::App& app) override { folders_.add_to(app); }
  void find_files() override { files = paths_of(folders_.bilingual_documents(files)); }
  FolderOptions* folder_options() override { return &folders_; }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    Outcome outcome;
    outcome.details["translated"] = pseudo_translate(file, event);
    outcome.produced.push_back({file, kBilingualDocument});
    return outcome;
  }

 private:
  FolderOptions folders_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "pseudo", "Fill bilingual documents with a readable test translation", "kavo pseudo index_asp_htm_FR.tud",
     make_verb<Pseudo>},
};

}  // namespace

std::span<const VerbEntry> pseudo_verbs() { return kVerbs; }

}  // namespace kavo
