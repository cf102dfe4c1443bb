// kavo prepare: documents prepared for translation and turned into bilingual documents.
#include <algorithm>

#include "cli/option_values.h"
#include "cli/outcome_observer.h"
#include "cli/prepared_documents.h"
#include "cli/verb.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "driver/K19FPWObj.h"
#include "driver/companions.h"
#include "driver/prepare_and_convert.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/filters/filter_options.h"
#include "workflow/page_guard.h"
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
    app.add_option("--target", target_, "Language to translate them into, such as FR, DE-AT or zh-Hant-TW")
        ->required()
        ->type_name("CODE")
        ->transform(language_value());
    app.add_option("--target-code-page", target_code_page_,
                   "Code page of the rebuilt documents (else that of the source)")
        ->type_name("N")
        ->check(code_page_value());
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
        ->check(filter_option_value());
  }
  void start() override {
    driver_.emplace();
    batch_ = PreparationBatch(documents_among(files));
    if (!target_code_page_.empty())
      languages_.target_code_page = static_cast<std::int32_t>(code_page_number(target_code_page_));
    FilterOptions options;
    for (const std::string& option : filter_options_) {
      const std::size_t equals = option.find('=');
      choose(options, option.substr(0, equals), option.substr(equals + 1));
    }
    if (overwrite_) options["overwrite"] = "on";
    if (!scripts_.empty()) options["scripts.offer"] = scripts_;
    if (!paragraphs_.empty()) options["text.paragraphs"] = paragraphs_;
    for (const auto& [key, value] : options) languages_.filter_options += to_utf16(key + "=" + value + "\n");
    languages_.source = to_utf16(source_);
    languages_.target = to_utf16(target_);
    std::vector<std::u16string> folders;
    for (const std::u16string& file : files) folders.push_back(folder_of(ports().files->absolute(file)));
    std::ranges::sort(folders, LessIgnoringCase());
    const auto doubled = std::ranges::unique(folders, equal_ignoring_case);
    folders.erase(doubled.begin(), doubled.end());
    known_.emplace(languages_.source, languages_.target, std::move(folders));
  }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (const auto left_out = outcome_of_side_file(file)) return *left_out;
    if (!overwrite_) {
      refuse_work_beside_prepared_page(file);
      refuse_others_side_files(file);
    }
    Outcome outcome;
    PreparationRequest request = command_request(file);
    request.repairs = request.repairs && !no_repair_;
    SetUpdate update(*known_, file, overwrite_);
    RunLanguages languages = languages_;
    // What lies beside a document of ours was made of this source, too.
    languages.replaces_objects = overwrite_ || update.has_documents();
    FolderRun run(file);
    const ConvertedDocument converted =
        prepare_and_convert(request, batch_, languages, outcome_observer(outcome, progress));
    outcome.result = converted.preparation.result != 0 ? converted.preparation.result : converted.conversion.result;
    if (!converted.is_done()) outcome.ending = Outcome::kFailed;
    for (const ProducedFile& produced : converted.preparation.files)
      if (!produced.tud_name.empty()) outcome.produced.push_back({produced.tud_name, kBilingualDocument});
    if (converted.conversion.result != 0) outcome.messages.push_back({converted.conversion.reason});
    const bool is_unchanged = converted.is_done() && !fresh_ && !take_over(update, converted, outcome);
    if (!is_unchanged) run.commit();
    return outcome;
  }
  std::optional<Outcome> finish() override {
    if (updated_ < 2) return std::nullopt;
    Outcome outcome;
    add_counts(outcome, total_, to_utf16(std::to_string(updated_)) + u" files updated: ");
    outcome.details["update"]["files"] = updated_;
    return outcome;
  }

 private:
  // False when everything is as it was.
  bool take_over(SetUpdate& update, const ConvertedDocument& converted, Outcome& outcome) {
    const SetUpdateReport report = update.apply(converted.preparation.files);
    for (const Message& message : known_->take_messages()) outcome.messages.push_back(message);
    if (!report.is_update) return true;
    add_counts(outcome, report.counts, report.is_unchanged ? u"unchanged: " : u"");
    outcome.details["update"]["unchanged"] = report.is_unchanged;
    total_ += report.counts;
    ++updated_;
    return !report.is_unchanged;
  }

  static void add_counts(Outcome& outcome, const UpdateCounts& counts, const std::u16string& heading) {
    const std::pair<const char*, std::uint64_t> fields[] = {{"kept", counts.kept},
                                                            {"moved", counts.moved},
                                                            {"similar", counts.similar},
                                                            {"new", counts.fresh},
                                                            {"removed", counts.removed}};
    std::string text;
    for (const auto& [name, count] : fields) {
      outcome.details["update"][name] = count;
      text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + name;
    }
    outcome.messages.push_back({heading + to_utf16(text)});
  }

  // Throws `failure` 58 for side files' documents that another MIF document of the folder needs for its way back.
  void refuse_others_side_files(const std::u16string& document) const {
    const std::vector<std::u16string> own = bilingual_documents_of(document, languages_.target);
    if (FileTypeOf(document) != kMifDocument || !ports().files->info(own[1])) return;
    const std::u16string folder = folder_of(document);
    for (const std::u16string& name : ports().files->find(folder + u"*_mif_" + languages_.target + u".tud")) {
      const std::u16string other = folder + name;
      const auto is_other = [&](const std::u16string& known) { return equal_ignoring_case(known, other); };
      if (std::ranges::any_of(own, is_other) || std::ranges::any_of(files, [&](const std::u16string& file) {
            return is_other(tud_name_of(file, languages_.target));
          }))
        continue;
      throw failure(FailureNumber::kFileAlreadyExists,
                    path_text(other) + u" shares the documents of its hidden texts (KAVO_..._mif_" + languages_.target +
                        u".tud) with this one: prepare all MIF documents of a folder with one command" +
                        kOverwriteAdvice);
    }
  }

  static std::u16string path_text(std::u16string_view path) { return to_utf16(path_to_host(path)); }

  static constexpr char16_t kOverwriteAdvice[] = u". Nothing is changed; --overwrite replaces it";

  std::string source_;
  std::string target_;
  std::string target_code_page_;
  std::string scripts_;
  std::string paragraphs_;
  bool overwrite_ = false;
  bool no_repair_ = false;
  bool fresh_ = false;
  std::vector<std::string> filter_options_;
  RunLanguages languages_;
  std::optional<K19FPWObj> driver_;  // keeps the suite's filters at hand
  PreparationBatch batch_;
  std::optional<TranslatedFolders> known_;
  UpdateCounts total_;
  std::size_t updated_ = 0;  // files
};

constexpr VerbEntry kVerbs[] = {
    {"", "prepare", "Prepare documents and turn them into bilingual documents",
     "kavo prepare index.asp --source EN-US --target FR", make_verb<Prepare>},
};

}  // namespace

std::span<const VerbEntry> prepare_verbs() { return kVerbs; }

}  // namespace kavo
