// Reports on a run: results on standard output, messages on standard error, the failed files at the end.
#pragma once

#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/verb.h"
#include "workflow/message_text.h"

namespace kavo {

// Messages as a list of `line`, `column` and `text`; `file` as above.
nlohmann::ordered_json listed(const MessageList& messages, const std::string& file);

// The messages of a page's repair.
struct PageMessages {
  MessageList repairs;
  MessageList notes;  // about what was left as it is
};
PageMessages sorted_page_messages(const MessageList& messages);
// The fields `repairs` and `repair_count`, which every verb that repairs pages has.
void add_repairs(nlohmann::ordered_json& details, const MessageList& repairs, const std::string& file);

class Report {
 public:
  Report(std::string verb, bool json, bool quiet) : verb_(std::move(verb)), json_(json), quiet_(quiet) {}
  // `file` as the user wrote it, "" for an outcome of the whole run.
  void add(const std::string& file, const Outcome& outcome, double seconds);
  // Notes a file whose failure could not be reported.
  void add_failed() noexcept { any_failed_ = true; }
  // Lists the failures of a run over several files. Returns the exit code: 0 done, 1 failed, 3 a check found a
  // difference.
  ExitCode finish();

 private:
  void print_json(const std::string& file, const Outcome& outcome, double seconds) const;
  void print_text(const std::string& file, const Outcome& outcome);

  struct Failed {
    std::string file;
    std::string reason;
  };
  std::string verb_;
  bool json_;
  bool quiet_;
  std::size_t count_ = 0;
  bool any_failed_ = false;
  std::vector<Failed> failed_;
  bool different_ = false;
};

}  // namespace kavo
