// kavo export: bilingual documents for XLIFF editors.
#include <memory>

#include "cli/folder_options.h"
#include "cli/verb.h"
#include "common/clsCommon.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "driver/tud_name.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/xliff_package.h"
#include "workflow/document_set.h"

namespace kavo {
namespace {

// A bilingual document is already XLIFF. The copy gets the name that editors expect.
class Export final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--to", to_, "The file to write (default: FILE with the extension .xlf)")->type_name("FILE");
    app.add_flag(
        "--with-skeleton", with_skeleton_,
        "Write one file with all documents that belong together and their skeletons, which can be rebuilt alone");
    app.add_flag("--overwrite", overwrite_, "Replace an existing file");
    folders_.add_to(app);
  }
  void find_files() override {
    files = paths_of(folders_.bilingual_documents(files));
    if (!to_.empty() && files.size() > 1)
      throw failure(FailureNumber::kInvalidCall, u"--to names one file, but there are several to write");
  }
  void check_usage(std::size_t file_count) override {
    if (!to_.empty() && file_count > 1) throw CLI::ValidationError("--to", "goes with one FILE only");
  }
  FolderOptions* folder_options() override { return &folders_; }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    Outcome outcome;
    if (with_skeleton_ && TudName(file).is_taken_along()) {
      outcome.messages.push_back({u"left out, because it is exported with the document that it belongs to"});
      return outcome;
    }
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument document(file, &event);
    std::u16string target = path_from_host(to_);
    if (target.empty()) target = without_extension(file) + u".xlf";
    refuse_file_of_set(target, file);
    if (!overwrite_ && ports().files->info(target))
      throw failure(FailureNumber::kFileAlreadyExists,
                    to_utf16(path_to_host(target) +
                             " exists already and may hold translations: import them, or replace it with --overwrite"));
    std::uint64_t segments = document.size();
    if (with_skeleton_)
      segments += pack(document, target, outcome.messages);
    else
      copy_file(file, target);
    outcome.produced.push_back({target, kBilingualDocument});
    outcome.details["segments"] = segments;
    return outcome;
  }

 private:
  // The number of segments of the documents that belong to this one.
  static std::uint64_t pack(const BilingualDocument& document, const std::u16string& target, MessageList& messages) {
    std::vector<std::unique_ptr<BilingualDocument>> companions;
    std::vector<const BilingualDocument*> documents{&document};
    std::uint64_t segments = 0;
    for (const std::u16string& path : companion_documents(document.path())) {
      companions.push_back(std::make_unique<BilingualDocument>(path));
      documents.push_back(companions.back().get());
      segments += companions.back()->size();
      if (companions.back()->header().set.mark != document.header().set.mark)
        throw failure(FailureNumber::kInvalidCall,
                      to_utf16(path_to_host(path) + " comes from another preparation than " +
                               path_to_host(document.path()) + ": prepare the source document again"));
    }
    pack_documents(documents, target);
    if (const std::u16string objects = object_file_beside(document.path()); !objects.empty())
      messages.push_back(
          {to_utf16("to be rebuilt elsewhere it needs the object file beside it: " + path_to_host(objects))});
    return segments;
  }

  FolderOptions folders_;
  std::string to_;
  bool with_skeleton_ = false;
  bool overwrite_ = false;
};

constexpr VerbEntry kVerbs[] = {
    {"", "export", "Write bilingual documents for XLIFF editors", "kavo export index_asp_htm_FR.tud --to index.fr.xlf",
     make_verb<Export>},
};

}  // namespace

std::span<const VerbEntry> export_verbs() { return kVerbs; }

}  // namespace kavo
