// kavo export: bilingual documents for XLIFF editors.
#include "cli/verb.h"
#include "common/clsCommon.h"
#include "common/pending_file.h"
#include "platform/files.h"
#include "suite/bilingual_document.h"
#include "suite/skeleton_packing.h"

namespace kavo {
namespace {

// A bilingual document is an XLIFF document already: the copy carries the name that editors look for.
class Export final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--to", to_, "The file to write (else FILE with the extension .xlf)")->type_name("FILE");
    app.add_flag("--with-skeleton", with_skeleton_, "Put the skeleton inside, so that the one file can be rebuilt");
  }
  void check_usage(std::size_t file_count) override {
    if (!to_.empty() && file_count > 1) throw CLI::ValidationError("--to", "goes with one FILE only");
  }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument document(file, &event);
    const clsCommon common;
    std::u16string target = path_from_host(to_);
    if (target.empty()) target = common.strParseFileName(file, 0) + common.strParseFileName(file, 1) + u".xlf";
    if (with_skeleton_)
      copy_with_skeleton(document, target);
    else
      copy_file(file, target);
    Outcome outcome;
    outcome.produced.push_back({target, kBilingualDocument});
    outcome.details["segments"] = document.size();
    return outcome;
  }

 private:
  std::string to_;
  bool with_skeleton_ = false;
};

constexpr VerbEntry kVerbs[] = {
    {"", "export", "Write bilingual documents for XLIFF editors", "kavo export index_asp_HTM_FR.tud --to index.fr.xlf",
     make_verb<Export>},
};

}  // namespace

std::span<const VerbEntry> export_verbs() { return kVerbs; }

}  // namespace kavo
