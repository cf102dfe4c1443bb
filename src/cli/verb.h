// The verbs of the command: a row in a table for each verb, and a small class.
//
// A new group of verbs is one more file with its own table, which verbs.cpp lists.
#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/messages.h"
#include "common/progress_event.h"

namespace kavo {

class FolderOptions;

// The type of a produced file that is a bilingual document, for which there is no file type code.
inline constexpr std::int32_t kBilingualDocument = -1;

struct ProducedName {
  std::u16string path;  // core form
  std::int32_t type;    // file type code; or kBilingualDocument
};

// The outcome of one file.
struct Outcome {
  enum Ending { kDone, kFailed, kDifference };
  Ending ending = kDone;
  std::int32_t result = 0;  // the operation's own result code
  std::vector<ProducedName> produced;
  MessageList messages;
  std::vector<std::string> lines;  // further results, as the text form prints them
  // More fields of the file's JSON object, such as counts.
  nlohmann::ordered_json details = nlohmann::ordered_json::object();
};

// One run of a verb over the files of a command line. It is also made only to state its options; work begins with
// start(). Every member may throw `failure`. An `interruption` ends the whole run.
class Verb {
 public:
  virtual ~Verb() = default;
  // Adds the verb's own options and arguments, bound to members.
  virtual void add_options(CLI::App&) {}
  // Throws CLI::ValidationError for options that contradict each other.
  virtual void check_usage(std::size_t file_count) { static_cast<void>(file_count); }
  // Its options for folders, if it takes any.
  virtual FolderOptions* folder_options() { return nullptr; }
  // Replaces the folders in `files` by the files that they stand for. Called before start().
  virtual void find_files() {}
  virtual void start() {}
  // Names a file in the folder that run() writes to for this file, or finish() for "". All files there are written, or
  // none (FolderRun). "" for a step that does not write documents, or lets other programs write them.
  virtual std::u16string workplace(const std::u16string& file) const {
    static_cast<void>(file);
    return u"";
  }
  // Called for each file in turn (a core path), or once with "" when the verb takes none. After a failed file the next
  // ones follow.
  virtual Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) = 0;
  // Called after the last file, whatever has failed. Its outcome is reported like the others, but without a file.
  virtual std::optional<Outcome> finish() { return std::nullopt; }
  // For runs in several processes (workers.h): groups of indexes into `files` that can be worked on at the same time.
  // Empty for a verb that takes one file after another. A worker does not call find_files(). It gets the result of
  // share() for its files and sets `files` from that.
  virtual std::vector<std::vector<std::size_t>> jobs() const { return {}; }
  virtual nlohmann::ordered_json share(const std::vector<std::u16string>& files_of_worker) const {
    static_cast<void>(files_of_worker);
    return {};
  }
  virtual void take_share(const nlohmann::ordered_json& share) { static_cast<void>(share); }
  // Receives each file's outcome in the order of the files, whichever process ran it, for the totals that finish()
  // reports.
  virtual void add_up(const Outcome&) {}
  // Changes what the progress bar shows in the place of the file's name. Set by the caller that runs the verb.
  std::function<void(std::string)> tell_step;
  // Converts the paths of this run in a message to the host's form. Set by the caller that runs the verb. Messages of
  // an outcome need it only where they become lines or details.
  std::function<std::u16string(std::u16string)> in_host_form;
  // All files to work on, set before find_files(), for verbs whose files belong together.
  std::vector<std::u16string> files;
};

struct VerbEntry {
  std::string_view group;  // "html", or "" for a verb that stands alone
  std::string_view name;
  std::string_view summary;
  std::string_view example;  // a command line to show in the help
  std::unique_ptr<Verb> (*make)();
  bool takes_files = true;
  bool is_listed = true;   // listed in the help; false for verbs that only programs call
  bool can_share = false;  // several processes can share the work; see Verb::jobs()
};

template <class Kind>
std::unique_ptr<Verb> make_verb() {
  return std::make_unique<Kind>();
}

struct VerbGroup {
  std::string_view name;
  std::string_view summary;
};
std::span<const VerbGroup> verb_groups();
// All verbs in the order of the help.
std::vector<VerbEntry> all_verbs();

// The tables.
std::span<const VerbEntry> preprocess_verbs();
std::span<const VerbEntry> html_verbs();
std::span<const VerbEntry> mif_verbs();
std::span<const VerbEntry> rtf_verbs();
std::span<const VerbEntry> office_verbs();
std::span<const VerbEntry> settings_verbs();
std::span<const VerbEntry> init_verbs();
std::span<const VerbEntry> wizard_verbs();
std::span<const VerbEntry> prepare_verbs();
std::span<const VerbEntry> export_verbs();
std::span<const VerbEntry> import_verbs();
std::span<const VerbEntry> pseudo_verbs();
std::span<const VerbEntry> stats_verbs();
std::span<const VerbEntry> rebuild_verbs();
std::span<const VerbEntry> verify_verbs();
std::span<const VerbEntry> edit_verbs();

// A converter's error list without its first entry, which only names the run.
MessageList without_heading(const MessageList& messages);

}  // namespace kavo
