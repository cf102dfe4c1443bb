// kavo edit: what the editor launcher does.
#include "cli/verb.h"
#include "platform/ports.h"
#include "suite/components/editor_launcher.h"
#include "suite/document/bilingual_document.h"

namespace kavo {
namespace {

class Edit final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--memory", memory_, "Translation memory (TMX) for the editor")->type_name("FILE");
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    // Reported here, before the editor starts.
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument document(file, &event);
    const auto absolute = [](const std::u16string& path) { return ports().files->absolute(path); };
    start_editor({absolute(file), memory_.empty() ? u"" : absolute(path_from_host(memory_))});
    Outcome outcome;
    outcome.details["segments"] = document.size();
    return outcome;
  }

 private:
  std::string memory_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "edit", "Open bilingual documents in the editor for XLIFF", "kavo edit index_asp_htm_FR.tud --memory shop.tmx",
     make_verb<Edit>},
};

}  // namespace

std::span<const VerbEntry> edit_verbs() { return kVerbs; }

}  // namespace kavo
