// What the command can do: one row for each verb, one small class behind it.
//
// A new group of verbs is one more file with a table of its own, named in verbs.cpp.
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

// The type of a produced file that is a bilingual document: no file type code stands for one.
inline constexpr std::int32_t kBilingualDocument = -1;

struct ProducedName {
  std::u16string path;  // core form
  std::int32_t type;    // file type code; or kBilingualDocument
};

// How one file went.
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
  // Throws CLI::ValidationError for options that do not go together.
  virtual void check_usage(std::size_t file_count) { static_cast<void>(file_count); }
  // Its options for folders, if it takes any.
  virtual FolderOptions* folder_options() { return nullptr; }
  // Puts the files that folders stand for into the place of the folders, in `files`; before start().
  virtual void find_files() {}
  virtual void start() {}
  // Names a file in the folder that run() writes to for this file, or finish() for "". All files there are written, or
  // none (FolderRun). "" for a step that writes no documents, or lets other programs write them.
  virtual std::u16string workplace(const std::u16string& file) const {
    static_cast<void>(file);
    return u"";
  }
  // Called for each file in turn (a core path), or once with "" when the verb takes none. The files behind a failed one
  // follow.
  virtual Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) = 0;
  // Called after the last file, whatever failed. An outcome is reported as another one, without a file.
  virtual std::optional<Outcome> finish() { return std::nullopt; }
  // For runs in several processes (workers.h): groups of places in `files` that can be worked on side by side, none for
  // a verb that takes one file after the other. A worker gets what share() of its files says in the place of
  // find_files(), and sets `files`.
  virtual std::vector<std::vector<std::size_t>> jobs() const { return {}; }
  virtual nlohmann::ordered_json share(const std::vector<std::u16string>& files_of_worker) const {
    static_cast<void>(files_of_worker);
    return {};
  }
  virtual void take_share(const nlohmann::ordered_json& share) { static_cast<void>(share); }
  // Each file's outcome in the order of the files, for the totals that finish() reports; whichever process ran it.
  virtual void add_up(const Outcome&) {}
  // What the progress bar tells in the place of the file's name; set by whoever runs the verb.
  std::function<void(std::string)> tell_step;
  // Writes the paths of this run in a message as the host does. Set by whoever runs the verb. Messages of an outcome
  // need it only where they become lines or details.
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
  bool is_listed = true;   // in the help; not what only programs call
  bool can_share = false;  // Verb::jobs() tells how
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
