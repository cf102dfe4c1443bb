// The verbs of bilingual documents: prepare, export, import, pseudo, stats.
#include <algorithm>
#include <map>

#include "cli/verb.h"
#include "common/clsCommon.h"
#include "common/pending_file.h"
#include "common/tud_names.h"
#include "driver/K19FPWObj.h"
#include "driver/bilingual_names.h"
#include "driver/file_types.h"
#include "driver/wizard_run.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/bilingual_document.h"
#include "suite/pseudo_translation.h"
#include "suite/skeleton_packing.h"
#include "suite/word_count.h"

namespace kavo {
namespace {

constexpr std::int32_t kTudDocument = -1;

// Prepares a document and converts what that produced.
class Prepare final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--source", source_, "Language of the documents, such as EN-US")->required()->type_name("CODE");
    app.add_option("--target", target_, "Language to translate them into, such as FR")->required()->type_name("CODE");
    app.add_option("--target-code-page", target_code_page_,
                   "Code page of the rebuilt documents (else that of the source)")
        ->type_name("N");
    app.add_flag("--overwrite", overwrite_, "Replace bilingual documents that hold translations");
  }
  void start() override {
    driver_.emplace();
    driver_->QuietMode(1);
    driver_->batch(files);
    if (!target_code_page_.empty())
      languages_.target_code_page = static_cast<std::int32_t>(code_page_number(target_code_page_));
    languages_.source = ascii_upper(to_utf16(source_));
    languages_.target = ascii_upper(to_utf16(target_));
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    if (!overwrite_) {
      for (const std::u16string& tud : bilingual_documents_of(file, languages_.target)) refuse_translated(tud);
      refuse_others_side_files(file);
    }
    Outcome outcome;
    driver_->observe({[&](std::u16string_view, int percent) { progress(static_cast<std::int16_t>(percent)); },
                      [&](const Message& message) { outcome.messages.push_back(message); }});
    std::u16string name = file;
    outcome.result = driver_->PreProcess(name);
    driver_->observe({});
    if (outcome.result != 0) {
      outcome.ending = Outcome::kFailed;
      return outcome;
    }
    const std::span<const ProducedFile> produced = driver_->produced_files();
    std::vector<ProducedFile> prepared(produced.begin(), produced.end());
    const FilterRun run = convert_produced_files(prepared, languages_);
    for (const ProducedFile& converted : prepared)
      if (!converted.tud_name.empty()) outcome.produced.push_back({converted.tud_name, kTudDocument});
    if (run.result != 0) {
      outcome.ending = Outcome::kFailed;
      outcome.result = run.result;
      outcome.messages.push_back({run.reason});
    }
    return outcome;
  }

 private:
  // Throws `failure` 58 for a bilingual document that would take somebody's work along.
  static void refuse_translated(const std::u16string& tud) {
    if (!ports().files->info(tud)) return;
    std::size_t translated = 0;
    try {
      const BilingualDocument document(tud);
      for (std::size_t i = 0; i < document.size(); ++i) {
        const TranslationStatus status = document.segment(i).status;
        if (status != TranslationStatus::kUntranslated && status != TranslationStatus::kLocked) ++translated;
      }
    } catch (const failure& reason) {
      if (reason.is(FailureNumber::kInterrupted)) throw;
      throw failure(FailureNumber::kFileAlreadyExists,
                    path_text(tud) + u" is there and cannot be read: " + reason.description() + kOverwriteAdvice);
    }
    if (translated == 0) return;
    throw failure(
        FailureNumber::kFileAlreadyExists,
        path_text(tud) + u" holds translated texts (" + to_utf16(std::to_string(translated)) + u")" + kOverwriteAdvice);
  }

  // The same for the side files' documents that another MIF document of the folder needs for its way back.
  void refuse_others_side_files(const std::u16string& document) const {
    const std::vector<std::u16string> own = bilingual_documents_of(document, languages_.target);
    if (FileTypeOf(document) != kMifDocument || !ports().files->info(own[1])) return;
    const std::u16string folder = clsCommon().strParseFileName(document, 0);
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
  bool overwrite_ = false;
  RunLanguages languages_;
  std::optional<K19FPWObj> driver_;
};

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
    outcome.produced.push_back({target, kTudDocument});
    outcome.details["segments"] = document.size();
    return outcome;
  }

 private:
  std::string to_;
  bool with_skeleton_ = false;
};

// Takes translations over from what an editor handed back.
class Import final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--to", to_, "The bilingual document that takes the translations")->required()->type_name("TUD");
  }
  void start() override {
    document_.emplace(path_from_host(to_));
    for (std::size_t i = 0; i < document_->size(); ++i) by_number_.emplace(document_->segment(i).number, i);
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument given(file, &event);
    Outcome outcome;
    std::uint64_t taken = 0, refused = 0;
    for (std::size_t i = 0; i < given.size(); ++i) {
      const BilingualSegment segment = given.segment(i);
      const std::string reason = take(segment, taken);
      if (reason.empty()) continue;
      ++refused;
      outcome.messages.push_back({to_utf16("unit " + std::to_string(i + 1) + ": " + reason)});
    }
    document_->save();
    outcome.details["taken"] = taken;
    outcome.details["refused"] = refused;
    outcome.lines.push_back(std::to_string(taken) + " translations taken over, " + std::to_string(refused) +
                            " refused");
    if (refused != 0) outcome.ending = Outcome::kDifference;
    outcome.produced.push_back({document_->path(), kTudDocument});
    return outcome;
  }

 private:
  // "" when the translation was taken or there is nothing new in it, else why it was not.
  std::string take(const BilingualSegment& given, std::uint64_t& taken) {
    const auto found = by_number_.find(given.number);
    if (found == by_number_.end()) return "the document has no such unit";
    const BilingualSegment own = document_->segment(found->second);
    if (own.source != given.source) return "its source text is another one";
    if (own.target == given.target && own.status == given.status) return {};
    try {
      document_->set_segment(found->second, given.target, given.status, given.match);
    } catch (const failure& reason) {
      return reason.what();
    }
    ++taken;
    return {};
  }

  std::string to_;
  std::optional<BilingualDocument> document_;
  std::map<std::uint32_t, std::size_t> by_number_;
};

// Fills every open segment with its own text in brackets and with accents.
class Pseudo final : public Verb {
 public:
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    Outcome outcome;
    outcome.details["translated"] = pseudo_translate(file, event);
    outcome.produced.push_back({file, kTudDocument});
    return outcome;
  }
};

// What there is to do, and what is done.
struct Counts {
  std::uint64_t segments = 0;
  std::uint64_t words = 0;
  std::uint64_t untranslated = 0;
  std::uint64_t fuzzy = 0;
  std::uint64_t translated = 0;
  std::uint64_t locked = 0;
  std::uint64_t open_words = 0;  // of the untranslated and the fuzzy segments

  void add(const BilingualSegment& segment) {
    const std::uint64_t count = word_count(plain_text(segment.source));
    ++segments;
    words += count;
    switch (segment.status) {
      case TranslationStatus::kLocked:
        ++locked;
        return;
      case TranslationStatus::kUntranslated:
        ++untranslated;
        open_words += count;
        return;
      case TranslationStatus::kFuzzy:
        ++fuzzy;
        open_words += count;
        return;
      default:
        ++translated;
    }
  }
  void add(const Counts& other) {
    segments += other.segments;
    words += other.words;
    untranslated += other.untranslated;
    fuzzy += other.fuzzy;
    translated += other.translated;
    locked += other.locked;
    open_words += other.open_words;
  }
};

class Stats final : public Verb {
 public:
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument document(file, &event);
    Counts counts;
    for (std::size_t i = 0; i < document.size(); ++i) counts.add(document.segment(i));
    total_.add(counts);
    ++files_;
    const std::u16string name = file.substr(clsCommon().strParseFileName(file, 0).size());
    return outcome_of(counts, to_utf8(name), files_ == 1);
  }
  std::optional<Outcome> finish() override {
    if (files_ < 2) return std::nullopt;
    return outcome_of(total_, "total", false);
  }

 private:
  static Outcome outcome_of(const Counts& counts, const std::string& name, bool with_heading) {
    Outcome outcome;
    if (with_heading) outcome.lines.push_back("segments    words     open    fuzzy     done   locked  words left");
    const auto column = [](std::uint64_t number, std::size_t width) {
      const std::string digits = std::to_string(number);
      return std::string(width - std::min(width, digits.size()), ' ') + digits;
    };
    outcome.lines.push_back(column(counts.segments, 8) + column(counts.words, 9) + column(counts.untranslated, 9) +
                            column(counts.fuzzy, 9) + column(counts.translated, 9) + column(counts.locked, 9) +
                            column(counts.open_words, 12) + "  " + name);
    outcome.details["segments"] = counts.segments;
    outcome.details["words"] = counts.words;
    outcome.details["untranslated"] = counts.untranslated;
    outcome.details["fuzzy"] = counts.fuzzy;
    outcome.details["translated"] = counts.translated;
    outcome.details["locked"] = counts.locked;
    outcome.details["words_left"] = counts.open_words;
    return outcome;
  }

  Counts total_;
  std::size_t files_ = 0;
};

constexpr VerbEntry kVerbs[] = {
    {"", "prepare", "Prepare documents and turn them into bilingual documents",
     "kavo prepare index.asp --source EN-US --target FR", make_verb<Prepare>},
    {"", "export", "Write bilingual documents for XLIFF editors", "kavo export index_asp_HTM_FR.tud --to index.fr.xlf",
     make_verb<Export>},
    {"", "import", "Take translations over from what an editor handed back",
     "kavo import index.fr.xlf --to index_asp_HTM_FR.tud", make_verb<Import>},
    {"", "pseudo", "Fill bilingual documents with a readable test translation", "kavo pseudo index_asp_HTM_FR.tud",
     make_verb<Pseudo>},
    {"", "stats", "Count segments and words of bilingual documents", "kavo stats *.tud", make_verb<Stats>},
};

}  // namespace

std::span<const VerbEntry> tud_verbs() { return kVerbs; }

}  // namespace kavo
