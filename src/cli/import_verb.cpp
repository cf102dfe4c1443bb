// kavo import: the translations that an editor handed back.
#include <map>

#include "cli/counted.h"
#include "cli/folder_options.h"
#include "cli/verb.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/tud_format.h"
#include "suite/document/xliff_package.h"
#include "workflow/folder_files.h"
#include "workflow/translation_import.h"
#include "workflow/work_folder.h"

namespace kavo {
namespace {

bool may_be_translation(const std::u16string& path) {
  const std::u16string extension = ascii_lower(extension_of(path));
  return extension == u"xlf" || extension == u"xliff" || extension == u"xml" || extension == u"tud";
}

// Takes translations over from what an editor handed back.
class Import final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--to", to_, "The bilingual document that takes the translations, or a folder of documents")
        ->required()
        ->type_name("TUD");
    folders_.add_to(app);
  }
  FolderOptions* folder_options() override { return &folders_; }
  void find_files() override {
    const std::vector<FolderFile> found = files_meant(files, folders_.selection(), may_be_translation);
    files = paths_of(found);
    const std::u16string to = path_from_host(to_);
    const auto info = ports().files->info(to);
    if (!info || !info->is_folder) {
      for (const std::u16string& file : files) takers_.emplace(file, Taker{to, {}});
      return;
    }
    documents_ = documents_of(to);
    for (const FolderFile& file : found) {
      if (is_package(file.path))
        packages_.emplace(file.path, file.relative);
      else
        takers_.emplace(file.path, taker_of(file));
    }
  }
  std::u16string workplace(const std::u16string& file) const override {
    if (packages_.contains(file)) return path_in(path_from_host(to_), file_name_of(file));
    return file.empty() ? u"" : takers_.at(file).document;
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (packages_.contains(file)) return take_package(file, progress);
    const Taker& taker = takers_.at(file);
    if (!taker.problem.empty()) throw failure(FailureNumber::kInvalidCall, taker.problem);
    if (!import_ || document_ != taker.document) {
      import_.reset();
      document_ = taker.document;
      import_.emplace(document_);
    }
    ProgressEvent event;
    event.handler(progress);
    Outcome outcome;
    add_counts(outcome, take(file, outcome.messages, event));
    outcome.produced.push_back({import_->document().path(), kBilingualDocument});
    return outcome;
  }

 private:
  // By name, since several folders may hold documents with the same name.
  using Documents = std::multimap<std::u16string, FolderFile, LessIgnoringCase>;
  struct Taker {
    std::u16string document;
    std::u16string problem;  // why there is no document
  };

  static Documents documents_of(const std::u16string& folder) {
    Documents documents;
    for (FolderFile& file : files_of_folder(folder, {.recursive = true, .include = {}, .exclude = {}}))
      if (is_bilingual_name(file.path)) documents.emplace(file_name_of(file.path), std::move(file));
    return documents;
  }

  static void add_counts(Outcome& outcome, const TranslationImport::Counts& counts) {
    outcome.details["taken"] = counts.taken;
    outcome.details["refused"] = counts.refused;
    outcome.lines.push_back(counted(counts.taken, "translation") + " taken over, " + std::to_string(counts.refused) +
                            " refused");
    if (counts.refused != 0) outcome.ending = Outcome::kDifference;
  }

  // Every document of a package must find the one that takes its translations. Otherwise nothing is changed.
  Outcome take_package(const std::u16string& file, const ProgressEvent::Handler& progress) const {
    Outcome outcome;
    TranslationImport::Counts all;
    ProgressEvent event;
    event.handler(progress);
    const WorkFolder folder;
    for (const std::u16string& document : unpack_documents(file, folder.make("package"))) {
      const Taker taker = taker_of({document, folder_of(packages_.at(file)) + file_name_of(document)});
      if (!taker.problem.empty()) throw failure(FailureNumber::kInvalidCall, taker.problem);
      FolderRun run(taker.document);
      const TranslationImport::Counts counts =
          TranslationImport(taker.document).take(document, outcome.messages, &event);
      run.commit();
      all.taken += counts.taken;
      all.refused += counts.refused;
      outcome.produced.push_back({taker.document, kBilingualDocument});
    }
    add_counts(outcome, all);
    return outcome;
  }

  // The document that was made from the source, and for the language, that the file names.
  Taker taker_of(const FolderFile& file) const {
    try {
      const TudHeader header = header_of(file.path);
      const std::u16string name =
          file_name_of(tud_name_of(core_file_name(header.original), to_utf16(header.target_language)));
      const auto [first, last] = documents_.equal_range(name);
      const std::u16string in_folder = to_utf16(" in " + to_);
      if (first == last) return {{}, u"there is no " + name + in_folder + u", the document that it belongs to"};
      if (std::next(first) == last) return {first->second.path, {}};
      for (auto each = first; each != last; ++each)
        if (equal_ignoring_case(folder_of(each->second.relative), folder_of(file.relative)))
          return {each->second.path, {}};
      return {{},
              u"several documents of the name " + name + u" are" + in_folder +
                  u", none of them in the folder that the file has: name the right one with --to"};
    } catch (const failure& reason) {
      return {{}, reason.description()};
    }
  }

  TranslationImport::Counts take(const std::u16string& file, MessageList& messages, ProgressEvent& progress) {
    if (!is_package(file)) return import_->take(file, messages, &progress);
    const WorkFolder folder;
    for (const std::u16string& document : unpack_documents(file, folder.make("package")))
      if (import_->difference(header_of(document)).empty()) return import_->take(document, messages, &progress);
    throw failure(FailureNumber::kInvalidCall,
                  to_utf16("none of the documents in it belongs to " + path_to_host(import_->document().path())));
  }

  std::string to_;
  FolderOptions folders_;
  std::map<std::u16string, Taker> takers_;             // by file
  std::map<std::u16string, std::u16string> packages_;  // their paths in the named tree, by file
  Documents documents_;                                // of the folder that takes translations
  std::u16string document_;                            // that import_ has open
  std::optional<TranslationImport> import_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "import", "Take over translations from files that an editor has written",
     "kavo import index.fr.xlf --to index_asp_htm_FR.tud\n"
     "  kavo import returned/ --recursive --to work/",
     make_verb<Import>},
};

}  // namespace

std::span<const VerbEntry> import_verbs() { return kVerbs; }

}  // namespace kavo
