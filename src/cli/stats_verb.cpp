// kavo stats: counts what is translated and what is left to do.
#include <algorithm>

#include "cli/folder_options.h"
#include "cli/verb.h"
#include "common/path_parts.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/word_count.h"

namespace kavo {
namespace {

// Segments and words by their state.
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
  void add_options(CLI::App& app) override { folders_.add_to(app); }
  void find_files() override { files = paths_of(folders_.bilingual_documents(files)); }
  FolderOptions* folder_options() override { return &folders_; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument document(file, &event);
    Counts counts;
    for (std::size_t i = 0; i < document.size(); ++i) counts.add(document.segment(i));
    total_.add(counts);
    ++files_;
    const std::u16string name = file_name_of(file);
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

  FolderOptions folders_;
  Counts total_;
  std::size_t files_ = 0;
};

constexpr VerbEntry kVerbs[] = {
    {"", "stats", "Count segments and words of bilingual documents", "kavo stats *.tud", make_verb<Stats>},
};

}  // namespace

std::span<const VerbEntry> stats_verbs() { return kVerbs; }

}  // namespace kavo
