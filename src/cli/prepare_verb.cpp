// kavo prepare: documents prepared for translation and turned into bilingual documents.
#include <algorithm>
#include <deque>
#include <map>
#include <sstream>

#include "cli/counted.h"
#include "cli/folder_options.h"
#include "cli/option_values.h"
#include "cli/outcome_observer.h"
#include "cli/prepared_documents.h"
#include "cli/setting_table.h"
#include "cli/verb.h"
#include "cli/workers.h"
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
#include "platform/fnv_hash.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/filters/filter_options.h"
#include "workflow/manifest.h"
#include "workflow/page_guard.h"
#include "workflow/preparation_plan.h"
#include "workflow/set_update.h"

namespace kavo {
namespace {

// Prepares a document and converts what that produced.
class Prepare final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--source", source_, "Language of the documents, such as EN-US or en-US")
        ->required()
        ->type_name("CODE")
        ->transform(language_value());
    app.add_option("--target", target_, "Languages to translate them into, such as FR, DE-AT or zh-Hant-TW: FR,DE")
        ->required()
        ->type_name("CODE,...")
        ->transform(language_list_value());
    folders_.add_to(app);
    app.add_option("--output-dir", output_folder_,
                   "Prepare copies in this folder, in the folders that the documents have in theirs")
        ->type_name("FOLDER");
    app.add_option("--target-code-page", target_code_pages_,
                   "Code page of the rebuilt documents (else that of the source); JA=932 for one language")
        ->type_name("N")
        ->allow_extra_args(false)
        ->transform(language_code_page_value());
    app.add_option("--scripts", scripts_,
                   "Texts of scripts to offer: likely (those in doubt locked), all (those in doubt too) or none")
        ->type_name("WHICH")
        ->check(CLI::IsMember({"likely", "all", "none"}));
    app.add_flag("--fresh", fresh_, "Start anew: take nothing over from bilingual documents that are there");
    app.add_option("--paragraphs", paragraphs_,
                   "What is one text of a text file: a line (lines), what stands between empty lines (blank), or what "
                   "its lines look like (auto)")
        ->type_name("WHICH")
        ->check(CLI::IsMember({"lines", "blank", "auto"}));
    app.add_flag("--overwrite", overwrite_,
                 "Replace files in the way that were not made of this document, and what a resource script already has "
                 "in the target language");
    app.add_flag("--no-repair", no_repair_, "Leave the tags of pages as they are");
    app.add_option("--filter-option", filter_options_,
                   "What a filter is to do, such as rc.dialog-font=\"MS UI Gothic\" (docs/filter-options.md has all)")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(filter_option_value());
  }
  void find_files() override {
    name_targets();
    const bool has_folder = std::ranges::any_of(files, [](const std::u16string& file) {
      const auto info = ports().files->info(file);
      return info && info->is_folder;
    });
    if (!has_folder && output_folder_.empty()) return;
    FolderSelection selection = folders_.selection();
    if (!output_folder_.empty()) selection.leave_out.push_back(path_from_host(output_folder_));
    std::vector<PlannedDocument> plan =
        plan_preparation(sources_meant(files, selection), path_from_host(output_folder_), targets_);
    choose_options();
    if (!output_folder_.empty()) manifest_.emplace(path_from_host(output_folder_));
    if (!overwrite_ && !fresh_)
      up_to_date_ = leave_out_up_to_date(plan, targets_, [&](const PlannedDocument& document) {
        return std::ranges::any_of(targets_, [&](const std::u16string& target) {
          return manifest_ &&
                 manifest_->has_other_options(to_utf16(place_of(document.document)), target, options_of(target));
        });
      });
    files.clear();
    for (PlannedDocument& planned : plan) {
      if (!output_folder_.empty()) make_folders(folder_of(planned.document));
      files.push_back(planned.source);
      plan_.emplace(planned.source, std::move(planned));
    }
    is_project_ = true;
  }
  FolderOptions* folder_options() override { return &folders_; }
  void start() override {
    driver_.emplace();
    std::vector<std::u16string> documents;
    for (const std::u16string& file : files) documents.push_back(planned(file).document);
    batch_ = PreparationBatch(documents_among(documents));
    choose_options();
    if (run_folders_.empty()) run_folders_ = folders_among(documents);
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
    for (const std::u16string& file : files_of_worker) documents.push_back(planned(file).document);
    return {{"files", path_list(files_of_worker)}, {"documents", path_list(documents)}, {"folders", path_list(run_folders_)}};
  }
  void take_share(const nlohmann::ordered_json& share) override {
    name_targets();
    files = paths_in(share.at("files"));
    const std::vector<std::u16string> documents = paths_in(share.at("documents"));
    for (std::size_t i = 0; i < files.size(); ++i) plan_.emplace(files[i], PlannedDocument{files[i], documents[i]});
    run_folders_ = paths_in(share.at("folders"));
    is_worker_ = true;
  }
  void add_up(const Outcome& outcome) override {
    if (outcome.details.contains("languages")) done_.push_back(outcome.details);
    if (!outcome.details.contains("update")) return;
    const nlohmann::ordered_json& update = outcome.details["update"];
    UpdateCounts counts;
    for (const auto& [name, member] : kCounts) counts.*member = update.value(name, std::uint64_t{0});
    total_ += counts;
    ++updated_;
  }
  std::u16string workplace(const std::u16string& file) const override {
    if (file.empty()) return manifest_ ? Manifest::path_in_folder(path_from_host(output_folder_)) : u"";
    return planned(file).document;
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (const auto left_out = outcome_of_side_file(file)) return *left_out;
    const std::u16string document = planned(file).document;
    // What stands beside a copy is compared with the state that the copy has now.
    const bool is_there = is_file(document);
    if (!overwrite_) {
      for (const std::u16string& target : targets_) refuse_others_side_files(document, target);
      if (is_there) refuse_work_beside_prepared_page(document);
    }
    std::deque<SetUpdate> updates;  // one for each language
    std::vector<RunLanguages> languages;
    for (TranslatedFolders& known : known_) {
      const SetUpdate& update = updates.emplace_back(known, document, overwrite_);
      languages.push_back(languages_);
      languages.back().target = known.target_language();
      languages.back().target_code_page = target_code_page(known.target_language());
      // Files beside a bilingual document were made of this source, too.
      languages.back().replaces_objects = overwrite_ || update.has_documents();
    }
    FolderRun run(document);
    bring_sources(file);
    if (!overwrite_ && !is_there) refuse_work_beside_prepared_page(document);
    PreparationRequest request = command_request(document);
    request.repairs = request.repairs && !no_repair_;
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
    const bool is_unchanged = is_done && !fresh_ && !take_over(updates, converted, outcome);
    if (is_done && !output_folder_.empty()) {
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
      manifest_.emplace(path_from_host(output_folder_));
      for (const nlohmann::ordered_json& each : done_)
        for (const auto& [language, entry] : each["languages"].items())
          manifest_->note(to_utf16(each["source"].get<std::string>()), to_utf16(language), entry);
      complete_manifest();
      manifest_->save();
    }
    if (updated_ > 1) {
      add_counts(outcome, total_, to_utf16(std::to_string(updated_)) + u" files updated: ");
      outcome.details["update"]["files"] = updated_;
    }
    if (is_project_) {
      outcome.lines.push_back(counted(files.size(), "document") + " prepared, " + std::to_string(up_to_date_.size()) +
                              " up to date");
      outcome.details["prepared"] = files.size();
      outcome.details["up_to_date"] = up_to_date_.size();
    }
    return is_project_ || updated_ > 1 ? std::optional(outcome) : std::nullopt;
  }

 private:
  // False when everything is as it was, in all languages: their documents come from one preparation.
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

  // Before other workers change the documents of the run's folders.
  void read_translations() {
    for (TranslatedFolders& known : known_) {
      try {
        known.documents();
        known.removed();
      } catch (const failure&) {
        // Told for the first file that needs them.
      }
    }
  }

  void choose_options() {
    options_.clear();
    FilterOptions options;
    for (const std::string& option : filter_options_) {
      const std::size_t equals = option.find('=');
      choose(options, option.substr(0, equals), option.substr(equals + 1));
    }
    if (overwrite_) options["overwrite"] = "on";
    if (!scripts_.empty()) options["scripts.offer"] = scripts_;
    if (!paragraphs_.empty()) options["text.paragraphs"] = paragraphs_;
    languages_.filter_options.clear();
    for (const auto& [key, value] : options) languages_.filter_options += to_utf16(key + "=" + value + "\n");
    languages_.source = to_utf16(source_);
  }

  // A checksum of everything but the document that its bilingual documents depend on: a change of it is noticed. Made
  // once for each language, since nothing that it is made of changes in a run.
  const std::string& options_of(const std::u16string& target) const {
    std::string& options = options_[target];
    if (options.empty()) options = checksum_of_options(target);
    return options;
  }

  std::string checksum_of_options(const std::u16string& target) const {
    std::map<std::string, std::string> all;
    for (const Setting& setting : known_settings())
      if (setting.shapes_documents) all[setting.name] = setting.read();
    for (const std::string& option : listed_lines(to_utf8(languages_.filter_options))) {
      const std::size_t equals = option.find('=');
      all[option.substr(0, equals)] = option.substr(equals + 1);
    }
    all.erase("overwrite");  // says what may be replaced
    if (no_repair_) all["pages.repair"] = "off";
    all["source"] = to_utf8(languages_.source);
    all["code-page"] = std::to_string(ports().code_page->number());
    all["target-code-page"] = std::to_string(target_code_page(target));
    std::uint64_t hash = kFnvSeed;
    for (const auto& [name, value] : all) hash = fnv_add(hash, name + "=" + value + "\n");
    return checksum_text(hash);
  }

  static std::vector<std::string> listed_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  std::string place_of(const std::u16string& document) const {
    return place_below(path_from_host(output_folder_), document);
  }

  // MIF documents of a folder share documents: each of them names these.
  nlohmann::json manifest_entry(const std::u16string& document, const std::u16string& target) const {
    std::vector<std::u16string> documents = bilingual_documents_of(document, target);
    std::erase_if(documents, [](const std::u16string& tud) { return !is_file(tud); });
    return Manifest::entry_of(path_from_host(output_folder_), documents, options_of(target));
  }

  // Of what was made by a run that came to no end, or by an earlier version.
  void complete_manifest() {
    for (const PlannedDocument& planned : up_to_date_)
      for (const std::u16string& target : targets_) {
        const std::u16string source = to_utf16(place_of(planned.document));
        if (!manifest_->knows(source, target))
          manifest_->note(source, target, manifest_entry(planned.document, target));
      }
  }

  void name_targets() {
    for (const std::string& language : listed_languages(target_)) targets_.push_back(to_utf16(language));
  }

  static std::vector<std::u16string> folders_among(const std::vector<std::u16string>& documents) {
    std::vector<std::u16string> folders;
    for (const std::u16string& document : documents) folders.push_back(folder_of(ports().files->absolute(document)));
    std::ranges::sort(folders, LessIgnoringCase());
    const auto doubled = std::ranges::unique(folders, equal_ignoring_case);
    folders.erase(doubled.begin(), doubled.end());
    return folders;
  }

  static constexpr std::pair<const char*, std::uint64_t UpdateCounts::*> kCounts[] = {
      {"kept", &UpdateCounts::kept},
      {"moved", &UpdateCounts::moved},
      {"similar", &UpdateCounts::similar},
      {"new", &UpdateCounts::fresh},
      {"removed", &UpdateCounts::removed}};

  static void add_counts(Outcome& outcome, const UpdateCounts& counts, const std::u16string& heading) {
    std::string text;
    for (const auto& [name, member] : kCounts) {
      outcome.details["update"][name] = counts.*member;
      text += (text.empty() ? "" : ", ") + std::to_string(counts.*member) + " " + name;
    }
    outcome.messages.push_back({heading + to_utf16(text)});
  }

  // 0 for the usual one. What was said of the language goes before what was said of all.
  std::int32_t target_code_page(const std::u16string& language) const {
    std::string chosen;
    for (const std::string& each : target_code_pages_) {
      const std::size_t equals = each.find('=');
      if (equals == std::string::npos && chosen.empty()) chosen = each;
      if (equals != std::string::npos && to_utf16(each.substr(0, equals)) == language) chosen = each.substr(equals + 1);
    }
    return chosen.empty() ? 0 : static_cast<std::int32_t>(code_page_number(chosen));
  }

  PlannedDocument planned(const std::u16string& file) const {
    const auto found = plan_.find(file);
    return found == plan_.end() ? PlannedDocument{file, file} : found->second;
  }

  // The first MIF document of a folder needs them all.
  void bring_sources(const std::u16string& file) {
    const PlannedDocument own = planned(file);
    for (const std::u16string& other : batch_.book_of(own.document))
      if (other != own.document && FileTypeOf(other) == kMifDocument)
        for (const auto& [source, each] : plan_)
          if (each.document == other) bring_source(each, true);
    bring_source(own, overwrite_);
  }

  // Throws `failure` 58 for side files' documents that another MIF document of the folder needs for its way back.
  void refuse_others_side_files(const std::u16string& document, const std::u16string& target) const {
    const std::vector<std::u16string> own = bilingual_documents_of(document, target);
    if (FileTypeOf(document) != kMifDocument || !ports().files->info(own[1])) return;
    const std::u16string folder = folder_of(document);
    for (const std::u16string& name : ports().files->find(folder + u"*_mif_" + target + u".tud")) {
      const std::u16string other = folder + name;
      const auto is_other = [&](const std::u16string& known) { return equal_ignoring_case(known, other); };
      if (std::ranges::any_of(own, is_other) || std::ranges::any_of(files, [&](const std::u16string& file) {
            return is_other(tud_name_of(planned(file).document, target));
          }))
        continue;
      throw failure(FailureNumber::kFileAlreadyExists,
                    path_text(other) + u" shares the documents of its hidden texts (KAVO_..._mif_" + target +
                        u".tud) with this one: prepare all MIF documents of a folder with one command" +
                        kOverwriteAdvice);
    }
  }

  static std::u16string path_text(std::u16string_view path) { return to_utf16(path_to_host(path)); }

  static constexpr char16_t kOverwriteAdvice[] = u". Nothing is changed; --overwrite replaces it";

  std::string source_;
  std::string target_;  // with commas between
  FolderOptions folders_;
  std::string output_folder_;
  std::vector<std::string> target_code_pages_;  // "932", "JA=932"
  std::string scripts_;
  std::string paragraphs_;
  bool overwrite_ = false;
  bool no_repair_ = false;
  bool fresh_ = false;
  std::vector<std::string> filter_options_;
  RunLanguages languages_;
  std::optional<K19FPWObj> driver_;  // keeps the suite's filters at hand
  PreparationBatch batch_;
  std::vector<std::u16string> targets_;
  std::map<std::u16string, PlannedDocument> plan_;  // by source
  std::vector<std::u16string> run_folders_;         // of all documents, in order
  bool is_worker_ = false;
  mutable std::map<std::u16string, std::string> options_;  // checksums, by language
  bool is_project_ = false;                         // folders were named, or an output folder
  std::vector<PlannedDocument> up_to_date_;         // left out
  std::optional<Manifest> manifest_;                // of the output folder
  std::vector<nlohmann::ordered_json> done_;        // for it, of each file
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
