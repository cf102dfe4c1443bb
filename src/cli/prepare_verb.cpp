// kavo prepare: documents prepared for translation and turned into bilingual documents.
#include <algorithm>
#include <deque>
#include <map>
#include <utility>

#include "cli/counted.h"
#include "cli/outcome_observer.h"
#include "cli/prepare_options.h"
#include "cli/prepared_documents.h"
#include "cli/update_report.h"
#include "cli/verb.h"
#include "cli/workers.h"
#include "common/checksum.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "driver/K19FPWObj.h"
#include "driver/companions.h"
#include "driver/document_files.h"
#include "driver/prepare_and_convert.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "workflow/made_folders.h"
#include "workflow/manifest.h"
#include "workflow/page_guard.h"
#include "workflow/preparation_plan.h"
#include "workflow/set_update.h"
#include "workflow/side_file_guard.h"

namespace kavo {
namespace {

// Prepares a document and converts what that produced.
class Prepare final : public Verb {
 public:
  void add_options(CLI::App& app) override { options_.add_to(app); }
  void find_files() override {
    targets_ = options_.targets();
    const bool has_folder = std::ranges::any_of(files, [](const std::u16string& file) {
      const auto info = ports().files->info(file);
      return info && info->is_folder;
    });
    if (!has_folder && options_.output_folder.empty()) return;
    FolderSelection selection = options_.folders.selection();
    if (!options_.output_folder.empty()) selection.leave_out.push_back(path_from_host(options_.output_folder));
    std::vector<PlannedDocument> plan =
        plan_preparation(sources_meant(files, selection), path_from_host(options_.output_folder), targets_);
    if (!options_.output_folder.empty()) manifest_.emplace(path_from_host(options_.output_folder));
    if (!options_.overwrite && !options_.fresh)
      up_to_date_ = leave_out_up_to_date(plan, targets_, [&](const PlannedDocument& document) {
        return std::ranges::any_of(targets_, [&](const std::u16string& target) {
          return manifest_ && manifest_->has_other_options(to_utf16(place_of(document.document)), target,
                                                           checksum_of_options(target));
        });
      });
    files.clear();
    for (PlannedDocument& planned : plan) {
      if (!options_.output_folder.empty()) made_folders_.make(folder_of(planned.document));
      files.push_back(planned.source);
      plan_.emplace(planned.source, std::move(planned));
    }
    is_project_ = true;
  }
  FolderOptions* folder_options() override { return &options_.folders; }
  void start() override {
    driver_.emplace();
    for (const std::u16string& file : files) documents_.push_back(planned(file).document);
    batch_ = PreparationBatch(documents_among(documents_));
    languages_.source = to_utf16(options_.source);
    languages_.filter_options = options_.filter_options();
    if (run_folders_.empty()) run_folders_ = folders_among(documents_);
    for (const std::u16string& target : targets_) known_.emplace_back(languages_.source, target, run_folders_);
    if (is_worker_) read_translations();
  }
  std::vector<std::vector<std::size_t>> jobs() const override {
    std::vector<std::u16string> documents;
    std::vector<bool> is_office;
    for (const std::u16string& file : files) {
      documents.push_back(planned(file).document);
      is_office.push_back(needs_office(FileTypeOf(file)));
    }
    return jobs_by_folder(documents, is_office);
  }
  nlohmann::ordered_json share(const std::vector<std::u16string>& files_of_worker) const override {
    std::vector<std::u16string> documents;
    documents.reserve(files_of_worker.size());
    for (const std::u16string& file : files_of_worker) documents.push_back(planned(file).document);
    return {{"files", path_list(files_of_worker)},
            {"documents", path_list(documents)},
            {"folders", path_list(run_folders_)}};
  }
  void take_share(const nlohmann::ordered_json& share) override {
    targets_ = options_.targets();
    files = paths_in(share.at("files"));
    const std::vector<std::u16string> documents = paths_in(share.at("documents"));
    for (std::size_t i = 0; i < files.size(); ++i) plan_.emplace(files[i], PlannedDocument{files[i], documents[i]});
    run_folders_ = paths_in(share.at("folders"));
    is_worker_ = true;
  }
  void add_up(const Outcome& outcome) override {
    prepared_ += outcome.ending == Outcome::kDone;
    if (outcome.details.contains("languages")) done_.push_back(outcome.details.dump());
    if (!outcome.details.contains("update")) return;
    total_ += counts_of(outcome.details["update"]);
    ++updated_;
  }
  std::u16string workplace(const std::u16string& file) const override {
    if (file.empty()) return manifest_ ? Manifest::path_in_folder(path_from_host(options_.output_folder)) : u"";
    return planned(file).document;
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (const auto left_out = outcome_of_side_file(file)) return *left_out;
    const std::u16string document = planned(file).document;
    // Files beside a copy are compared with the current state of the copy.
    const bool is_there = is_file(document);
    if (!options_.overwrite) {
      for (const std::u16string& target : targets_) refuse_others_side_files(document, target, documents_);
      if (is_there) refuse_work_beside_prepared_page(document);
    }
    std::deque<SetUpdate> updates;  // one for each language
    std::vector<RunLanguages> languages;
    for (TranslatedFolders& known : known_) {
      const SetUpdate& update = updates.emplace_back(known, document, options_.overwrite);
      languages.push_back(languages_);
      languages.back().target = known.target_language();
      languages.back().target_code_page = options_.target_code_page(known.target_language());
      // Files beside a bilingual document were made from this source, too.
      languages.back().replaces_objects = options_.overwrite || update.has_documents();
    }
    FolderRun run(document);
    bring_sources(file);
    if (!options_.overwrite && !is_there) refuse_work_beside_prepared_page(document);
    PreparationRequest request = command_request(document);
    request.repairs = request.repairs && !options_.no_repair;
    Outcome outcome;
    const std::vector<ConvertedDocument> converted =
        prepare_and_convert(request, batch_, languages, outcome_observer(outcome, progress));
    for (const ConvertedDocument& each : converted) {
      outcome.result = each.preparation.result != 0 ? each.preparation.result : each.conversion.result;
      if (!each.is_done()) outcome.ending = Outcome::kFailed;
      for (const ProducedFile& produced : each.preparation.files)
        if (!produced.tud_name.empty()) outcome.produced.push_back({produced.tud_name, kBilingualDocument});
      if (each.conversion.result != 0) outcome.messages.push_back({each.conversion.reason});
    }
    const bool is_done = outcome.ending != Outcome::kFailed;
    const bool is_unchanged = is_done && !options_.fresh && !take_over(updates, converted, outcome);
    if (is_done && !options_.output_folder.empty()) {
      outcome.details["source"] = place_of(document);
      for (const std::u16string& target : targets_)
        outcome.details["languages"][to_utf8(target)] = manifest_entry(document, target);
    }
    if (!is_unchanged) run.commit();
    return outcome;
  }
  std::optional<Outcome> finish() override {
    Outcome outcome;
    if (manifest_) {
      // Another run may have written it meanwhile.
      manifest_.emplace(path_from_host(options_.output_folder));
      for (std::string& text : done_) {
        const nlohmann::ordered_json each = nlohmann::ordered_json::parse(std::exchange(text, {}));
        for (const auto& [language, entry] : each["languages"].items())
          manifest_->note(to_utf16(each["source"].get<std::string>()), to_utf16(language), entry);
      }
      complete_manifest();
      manifest_->save();
    }
    if (updated_ > 1) {
      add_counts(outcome, total_, to_utf16(std::to_string(updated_)) + u" files updated: ");
      outcome.details["update"]["files"] = updated_;
    }
    if (is_project_) {
      outcome.lines.push_back(counted(prepared_, "document") + " prepared, " + std::to_string(up_to_date_.size()) +
                              " up to date");
      outcome.details["prepared"] = prepared_;
      outcome.details["up_to_date"] = up_to_date_.size();
    }
    return is_project_ || updated_ > 1 ? std::optional(outcome) : std::nullopt;
  }

 private:
  // False when nothing has changed in any language. One preparation makes the documents of all languages, so it is all
  // or none.
  bool take_over(std::deque<SetUpdate>& updates, const std::vector<ConvertedDocument>& converted, Outcome& outcome) {
    bool is_unchanged = true;
    for (std::size_t i = 0; i < updates.size(); ++i)
      is_unchanged = is_unchanged && updates[i].is_unchanged(converted[i].preparation.files);
    UpdateCounts counts;
    bool is_update = false;
    for (std::size_t i = 0; i < updates.size(); ++i) {
      const SetUpdateReport report =
          is_unchanged ? updates[i].kept() : updates[i].apply(converted[i].preparation.files);
      for (const Message& message : known_[i].take_messages()) outcome.messages.push_back(message);
      is_update = is_update || report.is_update;
      counts += report.counts;
    }
    if (!is_update) return true;
    add_counts(outcome, counts, is_unchanged ? u"unchanged: " : u"");
    outcome.details["update"]["unchanged"] = is_unchanged;
    return !is_unchanged;
  }

  // This must happen before other workers change the documents of the run's folders.
  void read_translations() {
    for (TranslatedFolders& known : known_) {
      try {
        known.documents();
        known.removed();
      } catch (const failure&) {
        // The failure is reported for the first file that needs the translations.
      }
    }
  }

  // It is computed once for each language, since nothing that it depends on changes in a run.
  const std::string& checksum_of_options(const std::u16string& target) const {
    std::string& checksum = checksums_[target];
    if (checksum.empty()) checksum = options_.checksum(target);
    return checksum;
  }

  std::string place_of(const std::u16string& document) const {
    return place_below(path_from_host(options_.output_folder), document);
  }

  // The MIF documents of a folder share some bilingual documents, so the entry of each names these.
  nlohmann::json manifest_entry(const std::u16string& document, const std::u16string& target) const {
    std::vector<std::u16string> documents = bilingual_documents_of(document, target);
    std::erase_if(documents, [](const std::u16string& tud) { return !is_file(tud); });
    return Manifest::entry_of(path_from_host(options_.output_folder), documents, checksum_of_options(target));
  }

  // Adds entries for documents that a run made which did not finish, or an earlier version.
  void complete_manifest() {
    for (const PlannedDocument& planned : up_to_date_) {
      const std::u16string source = to_utf16(place_of(planned.document));
      const std::uint64_t checksum = checksum_of_file(planned.document);
      for (const std::u16string& target : targets_)
        if (!manifest_->knows(source, target, checksum))
          manifest_->note(source, target, manifest_entry(planned.document, target));
    }
  }

  static std::vector<std::u16string> folders_among(const std::vector<std::u16string>& documents) {
    std::vector<std::u16string> folders;
    folders.reserve(documents.size());
    for (const std::u16string& document : documents) folders.push_back(folder_of(ports().files->absolute(document)));
    std::ranges::sort(folders, LessIgnoringCase());
    folders.erase(std::unique(folders.begin(), folders.end(), equal_ignoring_case), folders.end());
    return folders;
  }

  PlannedDocument planned(const std::u16string& file) const {
    const auto found = plan_.find(file);
    return found == plan_.end() ? PlannedDocument{file, file} : found->second;
  }

  // The first MIF document of a folder needs all sources of the folder.
  void bring_sources(const std::u16string& file) {
    const PlannedDocument own = planned(file);
    for (const std::u16string& other : batch_.book_of(own.document))
      if (other != own.document && FileTypeOf(other) == kMifDocument)
        for (const auto& [source, each] : plan_)
          if (each.document == other) bring_source(each, true);
    bring_source(own, options_.overwrite);
  }

  PrepareOptions options_;
  RunLanguages languages_;
  std::optional<K19FPWObj> driver_;  // keeps the suite's filters at hand
  PreparationBatch batch_;
  std::vector<std::u16string> targets_;
  std::vector<std::u16string> documents_;           // of all files
  std::map<std::u16string, PlannedDocument> plan_;  // by source
  std::vector<std::u16string> run_folders_;         // of all documents, in order
  bool is_worker_ = false;
  mutable std::map<std::u16string, std::string> checksums_;  // checksums of the options, by language
  bool is_project_ = false;                                  // the command line names a folder or an output folder
  std::vector<PlannedDocument> up_to_date_;                  // left out
  std::optional<Manifest> manifest_;                         // of the output folder
  std::vector<std::string> done_;  // the manifest's new entry for each file, as JSON text, which takes little memory
  MadeFolders made_folders_;
  std::size_t prepared_ = 0;             // documents
  std::deque<TranslatedFolders> known_;  // of each language
  UpdateCounts total_;
  std::size_t updated_ = 0;  // files
};

constexpr VerbEntry kVerbs[] = {
    {"", "prepare", "Prepare documents and turn them into bilingual documents",
     "kavo prepare index.asp --source EN-US --target FR\n"
     "  kavo prepare site/ --recursive --output-dir work/ --source EN-US --target FR,DE,JA",
     make_verb<Prepare>, true, true, true},
};

}  // namespace

std::span<const VerbEntry> prepare_verbs() { return kVerbs; }

}  // namespace kavo
