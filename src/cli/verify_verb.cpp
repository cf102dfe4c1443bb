// kavo verify: reports for each document whether it survives the way into bilingual documents and back.
#include <algorithm>
#include <array>
#include <map>
#include <memory>

#include "cli/counted.h"
#include "cli/folder_options.h"
#include "cli/option_values.h"
#include "cli/report.h"
#include "cli/verb.h"
#include "cli/workers.h"
#include "common/file_type.h"
#include "common/path_parts.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "workflow/road_check.h"

namespace kavo {
namespace {

// Lines of each kind that are shown to people; --json lists all.
constexpr std::size_t kMostShown = 12;
// Characters of a text.
constexpr std::size_t kLongestShown = 72;

struct ChangeWords {
  TextChange change;
  const char* name;     // in JSON and at the head of a line
  const char* counted;  // "2 lost"
};
constexpr ChangeWords kChanges[] = {
    {TextChange::kLost, "lost", "lost"},
    {TextChange::kDoubled, "doubled", "doubled"},
    {TextChange::kAdded, "added", "added"},
    {TextChange::kChanged, "changed", "changed"},
    {TextChange::kBrokenCodes, "codes", "with broken placeholders"},
};
const ChangeWords& words_of(TextChange change) { return *std::ranges::find(kChanges, change, &ChangeWords::change); }

// The text in quotes, on one line, not too long, whatever bytes it holds.
std::string in_quotes(std::string_view text) {
  const std::u16string characters = to_utf16(text);
  std::u16string shown;
  for (const char16_t c : characters.substr(0, kLongestShown)) shown += c < 0x20 || c == 0x7F ? u'\u00B7' : c;
  // The cut must not leave half of a surrogate pair.
  if (!shown.empty() && (shown.back() & 0xFC00) == 0xD800) shown.pop_back();
  return "\"" + to_utf8(shown) + (characters.size() > kLongestShown ? "...\"" : "\"");
}

std::string place_of(std::int64_t line, std::int64_t column) {
  return std::to_string(line) + ":" + std::to_string(column);
}

// Only pages are repaired.
PageMessages messages_of(const RoadResult& result) {
  return result.is_page ? sorted_page_messages(result.messages) : PageMessages{{}, result.messages};
}

// The report on one file.
class Story {
 public:
  Story(const RoadResult& result, const std::string& file) : result_(result), file_(file) {}

  std::vector<std::string> lines() {
    lines_.push_back((result_.survives() ? "ok      " : "FAILED  ") + file_);
    tell_repairs();
    tell_unchanged();
    tell_translated();
    if (result_.book_difference)
      tell(*result_.book_difference, "together with the other MIF documents: differs from its translation alone");
    return std::move(lines_);
  }

 private:
  void add(std::string text) { lines_.push_back("        " + std::move(text)); }
  void add_more(std::size_t count) {
    if (count > kMostShown) add("    and " + std::to_string(count - kMostShown) + " more");
  }

  void tell_repairs() {
    const PageMessages messages = messages_of(result_);
    tell(messages.repairs, "repaired in " + counted(messages.repairs.size(), "place") + ":");
    tell(messages.notes, "while it was prepared:");
  }

  void tell(const MessageList& messages, std::string heading) {
    if (messages.empty()) return;
    add(std::move(heading));
    for (std::size_t i = 0; i < std::min(messages.size(), kMostShown); ++i) {
      const Message& message = messages[i];
      add("    " + (message.line > 0 ? place_of(message.line, message.column) + "  " : "") +
          message_text(message, file_));
    }
    add_more(messages.size());
  }

  void tell_unchanged() {
    if (result_.unchanged_failure) {
      add("unchanged: not rebuilt: " + message_text(*result_.unchanged_failure, file_));
    } else if (!result_.difference) {
      if (result_.has_form)
        add("unchanged: what the Office program wrote went back to it, byte for byte");
      else
        add(result_.was_repaired ? "unchanged: the repaired page came back, byte for byte"
                                 : "unchanged: came back, byte for byte");
    } else {
      tell(*result_.difference,
           std::string("unchanged: differs from the ") + (result_.was_repaired ? "repaired page" : "source"));
    }
  }

  void tell(const FileDifference& place, const std::string& heading) {
    add(heading + " from line " + std::to_string(place.line) + ", column " + std::to_string(place.column) + " on");
    add("    is       " + in_quotes(place.second));
    add("    must be  " + in_quotes(place.first));
  }

  void tell_translated() {
    if (result_.translated_failure) {
      add("translated: not rebuilt: " + message_text(*result_.translated_failure, file_));
      return;
    }
    const std::string total =
        counted(result_.texts, "text") + " in " + counted(result_.documents, "bilingual document");
    if (result_.findings.empty()) {
      add("translated: " + (result_.texts == 0 ? "there is no text in it" : "all came back, " + total));
      return;
    }
    std::string list;
    for (const ChangeWords& words : kChanges)
      if (const auto count = std::ranges::count(result_.findings, words.change, &RoadFinding::change); count != 0)
        list += (list.empty() ? "" : ", ") + std::to_string(count) + " " + words.counted;
    add("translated: " + list + ", of " + total);
    for (std::size_t i = 0; i < std::min(result_.findings.size(), kMostShown); ++i) tell(result_.findings[i]);
    add_more(result_.findings.size());
  }

  void tell(const RoadFinding& finding) {
    std::string line = "    " + (finding.side_file.empty() ? "" : to_utf8(finding.side_file) + ":") +
                       place_of(finding.place.line, finding.place.column) + "  ";
    line += words_of(finding.change).name;
    if (!finding.problem.empty()) line += " (" + finding.problem + ")";
    line += "  " + in_quotes(finding.expected.empty() ? finding.found : finding.expected);
    if (!finding.expected.empty() && !finding.found.empty()) line += " came back as " + in_quotes(finding.found);
    add(std::move(line));
  }

  const RoadResult& result_;
  const std::string& file_;
  std::vector<std::string> lines_;
};

nlohmann::ordered_json listed(const FileDifference& difference) {
  return {{"line", difference.line},
          {"column", difference.column},
          {"expected", difference.first},
          {"found", difference.second}};
}

nlohmann::ordered_json details_of(const RoadResult& result, const std::string& file) {
  using nlohmann::ordered_json;
  ordered_json details = ordered_json::object();
  details["texts"] = result.texts;
  details["documents"] = result.documents;
  const PageMessages messages = messages_of(result);
  if (result.is_page) add_repairs(details, messages.repairs, file);
  details["notes"] = listed(messages.notes, file);
  const char* unchanged = result.was_repaired ? "repaired" : "same";
  if (result.difference) unchanged = "different";
  if (result.unchanged_failure) unchanged = "failed";
  details["unchanged"] = unchanged;
  if (result.unchanged_failure) details["unchanged_reason"] = message_text(*result.unchanged_failure, file);
  if (result.difference) details["difference"] = listed(*result.difference);
  if (result.book_difference) details["together"] = listed(*result.book_difference);
  details["translated"] = result.translated_failure ? "failed" : (result.findings.empty() ? "same" : "different");
  if (result.translated_failure) details["translated_reason"] = message_text(*result.translated_failure, file);
  details["findings"] = ordered_json::array();
  for (const RoadFinding& finding : result.findings)
    details["findings"].push_back({{"kind", words_of(finding.change).name},
                                   {"file", finding.side_file.empty() ? file : to_utf8(finding.side_file)},
                                   {"line", finding.place.line},
                                   {"column", finding.place.column},
                                   {"expected", finding.expected},
                                   {"found", finding.found},
                                   {"problem", finding.problem}});
  return details;
}

class Verify final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--source", source_, "Language of the documents")
        ->type_name("CODE")
        ->capture_default_str()
        ->transform(language_value());
    app.add_option("--target", target_, "Language of the test translation")
        ->type_name("CODE")
        ->capture_default_str()
        ->transform(language_value());
    app.add_flag("--strict", strict_, "Do not let a page pass that needs repair");
    folders_.add_to(app);
  }
  void find_files() override { files = paths_of(sources_meant(files, folders_.selection())); }
  FolderOptions* folder_options() override { return &folders_; }
  void start() override {
    driver_.emplace();
    driver_->QuietMode(1);
    languages_ = {to_utf16(source_), to_utf16(target_)};
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    Outcome outcome;
    RoadResult result;
    try {
      check_road(*driver_, file, book_of(file), languages_, progress, result);
    } catch (const failure& reason) {
      outcome.ending = Outcome::kFailed;
      outcome.result = 1;
      outcome.messages = result.messages;
      if (!reason.description().empty()) outcome.messages.push_back({reason.description()});
      return outcome;
    }
    const bool passes = result.survives() && !(strict_ && result.was_repaired);
    if (!passes) outcome.ending = Outcome::kDifference;
    // A step that failed says nothing about the document.
    if (result.unchanged_failure || result.translated_failure) outcome.ending = Outcome::kFailed;
    outcome.result = passes ? 0 : 1;
    for (Message& message : result.messages) message.text = in_host_form(std::move(message.text));
    for (std::optional<Message>* reason : {&result.unchanged_failure, &result.translated_failure})
      if (*reason) {
        (*reason)->text = in_host_form(std::move((*reason)->text));
        outcome.messages.push_back(**reason);
      }
    const std::string name = path_to_host(file);
    outcome.lines = Story(result, name).lines();
    outcome.details = details_of(result, name);
    return outcome;
  }
  void add_up(const Outcome& outcome) override {
    ++files_;
    survived_ += outcome.ending == Outcome::kDone ? 1 : 0;
    texts_ += outcome.details.value("texts", std::uint64_t{0});
  }
  // The MIF documents of a folder are tried together, and Office documents share one engine.
  std::vector<std::vector<std::size_t>> jobs() const override {
    std::vector<Job> all;
    std::map<std::u16string, Job> together;
    for (std::size_t i = 0; i < files.size(); ++i) {
      const std::int32_t type = FileTypeOf(files[i]);
      if (type == kMifDocument)
        together[folder_of(files[i])].push_back(i);
      else if (needs_office(type))
        together[u"office"].push_back(i);  // never a folder's name, since those end in "\\"
      else
        all.push_back({i});
    }
    for (auto& [folder, job] : together) all.push_back(std::move(job));
    return all;
  }
  nlohmann::ordered_json share(const std::vector<std::u16string>& files_of_worker) const override {
    return path_list(files_of_worker);
  }
  void take_share(const nlohmann::ordered_json& share) override { files = paths_in(share); }
  std::optional<Outcome> finish() override {
    if (files_ < 2) return std::nullopt;
    Outcome outcome;
    outcome.lines.push_back(std::to_string(survived_) + " of " + std::to_string(files_) + " files survive, " +
                            counted(texts_, "text"));
    outcome.details["files"] = files_;
    outcome.details["survived"] = survived_;
    outcome.details["texts"] = texts_;
    return outcome;
  }

 private:
  // The MIF documents of the file's folder; null for any other file, and for a MIF document that is alone.
  MifBook* book_of(const std::u16string& file) {
    if (FileTypeOf(file) != kMifDocument) return nullptr;
    const std::u16string folder = folder_of(file);
    std::unique_ptr<MifBook>& book = books_[folder];
    if (book) return book.get();
    std::vector<std::u16string> documents;
    for (const std::u16string& other : files)
      if (FileTypeOf(other) == kMifDocument && folder_of(other) == folder &&
          std::ranges::find(documents, other) == documents.end())
        documents.push_back(other);
    if (documents.size() < 2) return nullptr;
    book = std::make_unique<MifBook>(std::move(documents));
    return book.get();
  }

  FolderOptions folders_;
  std::string source_ = "EN-US";
  std::string target_ = "FR";
  bool strict_ = false;
  RoadLanguages languages_;
  std::optional<K19FPWObj> driver_;
  std::size_t files_ = 0;
  std::size_t survived_ = 0;
  std::uint64_t texts_ = 0;
  std::map<std::u16string, std::unique_ptr<MifBook>> books_;  // by folder
};

constexpr VerbEntry kVerbs[] = {
    {"", "verify", "Prove on copies that documents survive preparing and rebuilding",
     "kavo verify *.asp *.htm *.mif *.txt", make_verb<Verify>, true, true, true},
};

}  // namespace

std::span<const VerbEntry> verify_verbs() { return kVerbs; }

}  // namespace kavo
