#include "cli/report.h"

#include <cmath>
#include <cstdio>

#include "cli/output.h"
#include "common/file_type.h"
#include "html/repair/clsHTMLValidate.h"
#include "platform/files.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// "page.htm:12:5: what was done"
std::string with_place(const std::string& file, const Message& message) {
  std::string place = file;
  if (message.line > 0)
    place += ':' + std::to_string(message.line) + (message.column > 0 ? ':' + std::to_string(message.column) : "");
  const std::string text = message_text(message, file);
  return place.empty() ? text : place + ": " + text;
}

void print_error(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

}  // namespace

nlohmann::ordered_json listed(const MessageList& messages, const std::string& file) {
  auto list = nlohmann::ordered_json::array();
  for (const Message& message : messages)
    list.push_back({{"line", message.line}, {"column", message.column}, {"text", message_text(message, file)}});
  return list;
}

PageMessages sorted_page_messages(const MessageList& messages) {
  PageMessages sorted;
  for (const Message& message : messages) (tells_repair(message) ? sorted.repairs : sorted.notes).push_back(message);
  return sorted;
}

void add_repairs(nlohmann::ordered_json& details, const MessageList& repairs, const std::string& file) {
  details["repairs"] = listed(repairs, file);
  details["repair_count"] = repairs.size();
}

void Report::add(const std::string& file, const Outcome& outcome, double seconds) {
  const bool failed = outcome.ending == Outcome::kFailed;
  any_failed_ = any_failed_ || failed;
  // The outcome of a whole batch has no name and does not count as a file.
  if (!file.empty()) ++count_;
  if (failed && !file.empty())
    failed_.push_back(
        {file, outcome.messages.empty() ? std::string() : whole_message_text(outcome.messages.back(), file)});
  if (outcome.ending == Outcome::kDifference) different_ = true;
  if (json_)
    print_json(file, outcome, seconds);
  else
    print_text(file, outcome);
}

void Report::print_json(const std::string& file, const Outcome& outcome, double seconds) const {
  using nlohmann::ordered_json;
  ordered_json line = ordered_json::object();
  line["verb"] = verb_;
  line["file"] = file;
  line["result"] = outcome.result;
  line["done"] = outcome.ending == Outcome::kDone;
  line["produced"] = ordered_json::array();
  for (const ProducedName& produced : outcome.produced) {
    ordered_json entry = {{"file", path_to_host(produced.path)}};
    if (produced.type >= 0) entry["type"] = produced.type;
    line["produced"].push_back(entry);
  }
  line["messages"] = ordered_json::array();
  for (const Message& message : outcome.messages)
    line["messages"].push_back({{"text", whole_message_text(message, file)},
                                {"number", message.number},
                                {"line", message.line},
                                {"column", message.column}});
  line.update(outcome.details);
  line["seconds"] = std::round(seconds * 1e6) / 1e6;
  // JSON cannot hold a file name that is not valid UTF-8, so its invalid bytes are replaced.
  print_output(line.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n");
}

void Report::print_text(const std::string& file, const Outcome& outcome) {
  const bool failed = outcome.ending == Outcome::kFailed;
  if (!quiet_ || failed)
    for (const Message& message : outcome.messages) print_error(with_place(file, message));
  if (failed && outcome.messages.empty()) print_error(file + ": failed");
  std::string results;
  for (const ProducedName& produced : outcome.produced) {
    results += path_to_host(produced.path);
    if (produced.type >= 0) results += formatted("\t{}\t{}", produced.type, file_type_row(produced.type).label);
    results += '\n';
  }
  for (const std::string& line : outcome.lines) (results += line) += '\n';
  print_output(results);
}

ExitCode Report::finish() {
  if (!failed_.empty() && count_ > 1) {
    print_error(formatted("kavo: {} of {} files failed:", failed_.size(), count_));
    for (const Failed& failed : failed_)
      print_error("  " + failed.file + (failed.reason.empty() ? "" : ": " + failed.reason));
  }
  if (any_failed_) return ExitCode::kFailed;
  return different_ ? ExitCode::kDifference : ExitCode::kDone;
}

}  // namespace kavo
