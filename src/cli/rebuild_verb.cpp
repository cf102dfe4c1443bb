// kavo rebuild: makes the translated document of a bilingual one.
#include <algorithm>
#include <map>
#include <set>

#include "cli/colours.h"
#include "cli/counted.h"
#include "cli/folder_options.h"
#include "cli/option_values.h"
#include "cli/outcome_observer.h"
#include "cli/verb.h"
#include "cli/workers.h"
#include "common/checksum.h"
#include "common/clsCommon.h"
#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/same_file.h"
#include "driver/K19FPWObj.h"
#include "driver/companions.h"
#include "driver/document_files.h"
#include "driver/translation.h"
#include "driver/tud_name.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/tud_format.h"
#include "suite/document/xliff_package.h"
#include "suite/languages/language_tags.h"
#include "workflow/made_folders.h"
#include "workflow/scratch_registry.h"
#include "workflow/unpacked_package.h"

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

// The document, its companions and their skeletons, as far as they exist, with the names that they have in their
// folder.
std::vector<std::u16string> documents_and_skeletons(const std::u16string& tud) {
  std::vector<std::u16string> documents = companions_of(TudName(tud));
  documents.insert(documents.begin(), tud);
  std::vector<std::u16string> names;
  for (const std::u16string& document : documents)
    for (const std::u16string& file : {document, skeleton_name_of(document)})
      for (const std::u16string& name : ports().files->find(file)) names.push_back(name);
  return names;
}

// Names hold the suite's codes. Rebuilding does not know other tags for the same language.
bool is_code(std::u16string_view text) {
  const LanguageRow* const language = find_language(text);
  return language != nullptr && equal_ignoring_ascii_case(language->code, text);
}

// Throws `failure` 5 for a language that the suite does not know: scripts, hidden texts and objects would not be put
// back. Such documents exist from before the command refused to prepare them.
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
    app.add_option("--output", output_, "The document to write (default: SOURCE_LANGUAGE.EXTENSION beside the source)")
        ->type_name("FILE");
    app.add_option(
           "--output-dir", output_folder_,
           "The folder to write to; {lang} in it becomes the language. Documents keep the names of their sources")
        ->type_name("FOLDER")
        ->excludes("--output");
    app.add_option("--target", target_, "In a folder: only the documents of these languages, such as FR,DE")
        ->type_name("CODE,...")
        ->transform(language_list_value());
    app.add_option("--copy-rest", rest_folders_,
                   "With --output-dir: also copy the files of this folder that are not documents, for each language")
        ->type_name("FOLDER")
        ->allow_extra_args(false);
    folders_.add_to(app);
    app.add_flag("--overwrite", overwrite_, "Replace an existing document");
    app.add_flag("--highlight", highlight_, "Colour the texts by their status: untranslated, fuzzy, 100 %, translated");
  }
  void check_usage(std::size_t file_count) override {
    if (!rest_folders_.empty() && output_folder_.empty())
      throw CLI::ValidationError("--copy-rest", "goes with --output-dir only");
    if (!output_.empty() && file_count > 1) throw CLI::ValidationError("--output", "goes with one FILE only");
  }
  void find_files() override {
    std::vector<FolderFile> found = folders_.bilingual_documents(files, listed_languages(target_));
    // Removes documents that are rebuilt together with others. If the user has named one of them, a message says so.
    std::erase_if(found, [&](const FolderFile& file) {
      return std::ranges::find(files, file.path) == files.end() && TudName(file.path).is_taken_along();
    });
    files = paths_of(found);
    if (files.size() > 1 && !output_.empty())
      throw failure(FailureNumber::kInvalidCall, u"--output names one document, but there are several to rebuild");
    if (!output_folder_.empty()) plan_outputs(found);
  }
  FolderOptions* folder_options() override { return &folders_; }
  std::vector<std::vector<std::size_t>> jobs() const override {
    std::vector<bool> is_office;
    for (const std::u16string& file : files)
      is_office.push_back(!is_package(file) && needs_office(FileTypeOf(u"." + TudName(file).part(1))));
    return jobs_by_folder(files, is_office);
  }
  nlohmann::ordered_json share(const std::vector<std::u16string>& files_of_worker) const override {
    nlohmann::ordered_json outputs = nlohmann::ordered_json::array();
    for (const std::u16string& file : files_of_worker) {
      const auto planned = outputs_.find(file);
      outputs.push_back(planned == outputs_.end() ? "" : to_utf8(planned->second));
    }
    return {{"files", path_list(files_of_worker)}, {"outputs", std::move(outputs)}};
  }
  void take_share(const nlohmann::ordered_json& share) override {
    files = paths_in(share.at("files"));
    const std::vector<std::u16string> outputs = paths_in(share.at("outputs"));
    for (std::size_t i = 0; i < files.size(); ++i)
      if (!outputs[i].empty()) outputs_.emplace(files[i], outputs[i]);
  }
  void start() override { driver_.emplace(); }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (is_package(file)) return rebuild_package(file, progress);
    const auto planned = outputs_.find(file);
    if (planned == outputs_.end()) return rebuild(file, path_from_host(output_), progress);
    return rebuild(file, planned->second, progress);
  }

  std::optional<Outcome> finish() override {
    if (rest_folders_.empty()) return std::nullopt;
    Outcome outcome;
    std::size_t copied = 0, there = 0;
    FolderSelection selection = folders_.selection();
    selection.leave_out.insert(selection.leave_out.end(), output_folders_.begin(), output_folders_.end());
    for (const std::string& folder : rest_folders_)
      for (const FolderFile& file : rest_of_folder(path_from_host(folder), selection))
        for (const std::u16string& output : output_folders_)
          (copy_rest(file, path_in(output, file.relative), outcome) ? copied : there) += 1;
    outcome.lines.push_back(counted(copied, "other file") + " copied, " + std::to_string(there) + " left as they are");
    outcome.details["copied"] = copied;
    outcome.details["left"] = there;
    return outcome;
  }

 private:
  // False when the same file is already there. Fails when a different one has its name, unless it may be replaced.
  bool copy_rest(const FolderFile& file, const std::u16string& target, Outcome& outcome) {
    throw_if_interrupted();
    made_folders_.make(folder_of(target));
    FolderRun run(target, [&](const std::u16string& text) { outcome.messages.push_back({text}); });
    if (is_file(target)) {
      if (checksum_of_file(target) == checksum_of_file(file.path)) return false;
      if (!overwrite_) {
        outcome.ending = Outcome::kFailed;
        outcome.result = 1;
        outcome.messages.push_back({to_utf16(path_to_host(target)) + u" exists and differs from " +
                                    to_utf16(path_to_host(file.path)) + u": --overwrite replaces it"});
        return false;
      }
    }
    copy_file(file.path, target);
    run.commit();
    return true;
  }

  // Each document gets the name of its source, in the folder that it has in its tree. Throws `failure` 58 when two
  // would have the same name. Nothing is written then.
  void plan_outputs(const std::vector<FolderFile>& documents) {
    std::map<std::u16string, std::u16string, LessIgnoringCase> makers;
    for (const FolderFile& document : documents) {
      const TudName name(document.path);
      if (is_package(document.path) || name.is_taken_along()) continue;
      const std::string folder = for_language(output_folder_, to_utf8(name.language()));
      const std::string source = header_of(document.path).set.author_document;
      if (source.empty())
        throw failure(FailureNumber::kInvalidCall,
                      to_utf16(path_to_host(document.path) +
                               " does not say what it was made from: prepare it again, or rebuild it with --output"));
      const std::u16string output =
          path_in(path_from_host(folder), folder_of(document.relative) + core_file_name(source));
      if (const auto [maker, is_new] = makers.try_emplace(output, document.path); !is_new)
        throw failure(FailureNumber::kFileAlreadyExists,
                      to_utf16(path_to_host(maker->second) + " and " + path_to_host(document.path) +
                               " would both become " + path_to_host(output) +
                               ". Nothing is written: put {lang} into --output-dir, or choose with --target"));
      outputs_.emplace(document.path, output);
      made_folders_.make(folder_of(output));
      output_folders_.insert(path_from_host(folder));
    }
  }

  // Rebuilds each document of a package in a scratch folder, and puts the results beside the package.
  Outcome rebuild_package(const std::u16string& file, const ProgressEvent::Handler& progress) {
    const UnpackedPackage package(file);
    const std::u16string output = path_from_host(output_);
    if (!output.empty() && package.documents().size() > 1)
      throw failure(FailureNumber::kInvalidCall, u"--output names one document, but several are in the file");
    // Rebuilding stores the font map of the document's folder, which is a scratch folder here.
    ScratchRegistry registry(*ports().registry);
    const PortsScope scope;
    ports().registry = &registry;
    Outcome all;
    try {
      for (const std::u16string& document : package.documents()) {
        Outcome one = rebuild(document, output, progress);
        if (one.ending == Outcome::kDone && output.empty()) move_beside(file, one);
        for (Message& message : one.messages) {
          message.text = package.with_own_folder(message.text);
          all.messages.push_back(message);
        }
        all.ending = one.ending;
        all.result = one.result;
        if (one.ending != Outcome::kDone) {
          all.produced.clear();
          return all;
        }
        all.produced.insert(all.produced.end(), one.produced.begin(), one.produced.end());
      }
    } catch (const failure& reason) {
      throw failure(static_cast<FailureNumber>(reason.number()), package.with_own_folder(reason.description()));
    }
    return all;
  }

  void move_beside(const std::u16string& package, Outcome& made) const {
    for (ProducedName& produced : made.produced) {
      const std::u16string target = folder_of(package) + file_name_of(produced.path);
      if (is_same_file(target, package))
        throw failure(FailureNumber::kInvalidCall, u"The target must be another file than " + target);
      if (!overwrite_ && ports().files->info(target))
        throw failure(FailureNumber::kFileAlreadyExists, to_utf16(path_to_host(target) + " exists already"));
      replace_file(produced.path, target);
      produced.path = target;
    }
  }

  Outcome rebuild(const std::u16string& file, const std::u16string& output, const ProgressEvent::Handler& progress) {
    Outcome outcome;
    if (TudName(file).is_taken_along()) {
      outcome.messages.push_back({u"left out, because it is rebuilt with the document that it belongs to"});
      return outcome;
    }
    refuse_unknown_language(file);
    refuse_missing_companions(file);
    const TranslationRequest request{.tud = file,
                                     .preview = overwrite_ ? kOverwrite : 0,
                                     .highlight = highlight_ ? 1 : 0,
                                     .output = output,
                                     .keeps_existing = !overwrite_,
                                     .refuses_gaps = true,
                                     .unset_colours = kUsualStatusColours};
    const TranslationResult result = create_translation(request, outcome_observer(outcome, progress));
    outcome.result = result.error;
    if (result.error == kNoError) {
      outcome.produced.push_back({result.target, kind_of_document(result.target).type});
    } else {
      outcome.ending = Outcome::kFailed;
      outcome.messages.insert(outcome.messages.begin(), {translation_error_text(result)});
    }
    return outcome;
  }

  std::string output_;
  std::string output_folder_;
  std::string target_;
  FolderOptions folders_;
  std::map<std::u16string, std::u16string> outputs_;  // by bilingual document
  std::set<std::u16string> output_folders_;           // of all languages
  MadeFolders made_folders_;
  std::vector<std::string> rest_folders_;
  bool overwrite_ = false;
  bool highlight_ = false;
  std::optional<K19FPWObj> driver_;  // for the suite's filters
};

constexpr VerbEntry kVerbs[] = {
    {"", "rebuild", "Rebuild the translated documents of bilingual documents",
     "kavo rebuild index_asp_htm_FR.tud\n"
     "  kavo rebuild work/ --recursive --output-dir 'site-{lang}/'",
     make_verb<Rebuild>, true, true, true},
};

}  // namespace

std::span<const VerbEntry> rebuild_verbs() { return kVerbs; }

}  // namespace kavo
