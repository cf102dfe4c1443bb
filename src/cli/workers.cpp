#include "cli/workers.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <numeric>
#include <set>
#include <utility>

#include "cli/exit_code.h"
#include "cli/output.h"
#include "common/file_type.h"
#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/desktop.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "workflow/folder_files.h"

namespace kavo {
namespace {

using nlohmann::ordered_json;

constexpr auto kBetweenLooks = std::chrono::milliseconds(50);
constexpr auto kLongestGoodbye = std::chrono::seconds(10);  // for a worker that was asked to stop
constexpr const char* kReady = "ready";

// Large jobs first, each to the worker with the least so far.
std::vector<std::vector<std::size_t>> shares_of(const Verb& verb, std::vector<Job> jobs, std::size_t count) {
  const auto bytes_of = [&](const Job& job) {
    return std::accumulate(job.begin(), job.end(), std::uint64_t{0}, [&](std::uint64_t sum, std::size_t file) {
      constexpr std::uint64_t kEachFile = 16 * 1024;  // what opening and naming a file costs, as a number of bytes
      const auto info = ports().files->info(verb.files[file]);
      return sum + kEachFile + (info ? info->size : 0);
    });
  };
  std::vector<std::pair<std::uint64_t, Job>> sized;
  sized.reserve(jobs.size());
  for (Job& job : jobs) sized.emplace_back(bytes_of(job), std::move(job));
  std::ranges::stable_sort(sized, std::greater(), [](const auto& each) { return each.first; });
  std::vector<std::vector<std::size_t>> shares(std::min(count, sized.size()));
  std::vector<std::uint64_t> bytes(shares.size(), 0);
  for (const auto& [size, job] : sized) {
    const auto least = static_cast<std::size_t>(std::ranges::min_element(bytes) - bytes.begin());
    bytes[least] += size;
    shares[least].insert(shares[least].end(), job.begin(), job.end());
  }
  for (auto& share : shares) std::ranges::sort(share);
  return shares;
}

Outcome outcome_in(const ordered_json& line) {
  Outcome outcome;
  outcome.ending = static_cast<Outcome::Ending>(line.at("ending").get<int>());
  outcome.result = line.at("result").get<std::int32_t>();
  for (const ordered_json& each : line.at("produced"))
    outcome.produced.push_back({to_utf16(each.at(0).get<std::string>()), each.at(1).get<std::int32_t>()});
  for (const ordered_json& each : line.at("messages"))
    outcome.messages.push_back({to_utf16(each.at(0).get<std::string>()), each.at(1).get<std::int32_t>(),
                                each.at(2).get<std::int64_t>(), each.at(3).get<std::int64_t>()});
  outcome.lines = line.at("lines").get<std::vector<std::string>>();
  outcome.details = line.at("details");
  return outcome;
}

}  // namespace

bool needs_office(std::int32_t type) {
  return type == kWordDocument || file_type_row(type).way_back == WayBack::kOfficeFile;
}

std::vector<Job> jobs_by_folder(const std::vector<std::u16string>& documents, const std::vector<bool>& is_office) {
  std::map<std::u16string, Job, LessIgnoringCase> folders;
  std::set<std::u16string, LessIgnoringCase> office;
  for (std::size_t i = 0; i < documents.size(); ++i) {
    const std::u16string folder = folder_of(ports().files->absolute(documents[i]));
    folders[folder].push_back(i);
    if (is_office[i]) office.insert(folder);
  }
  std::vector<Job> jobs(1);
  for (auto& [folder, job] : folders)
    if (office.contains(folder))
      jobs.front().insert(jobs.front().end(), job.begin(), job.end());
    else
      jobs.push_back(std::move(job));
  if (jobs.front().empty()) jobs.erase(jobs.begin());
  return jobs;
}

ordered_json path_list(const std::vector<std::u16string>& paths) {
  ordered_json list = ordered_json::array();
  for (const std::u16string& path : paths) list.push_back(to_utf8(path));
  return list;
}

std::vector<std::u16string> paths_in(const ordered_json& list) {
  std::vector<std::u16string> paths;
  for (const ordered_json& each : list) paths.push_back(to_utf16(each.get<std::string>()));
  return paths;
}

bool Workers::can_share(const Verb& verb) {
  try {
    static_cast<void>(verb.share(verb.files).dump());
    return true;
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

// If this fails half way, the destructor runs, because the delegated constructor has finished.
Workers::Workers(const Verb& verb, const std::vector<Job>& jobs, std::size_t count, std::vector<std::string> arguments)
    : Workers(verb, std::move(arguments)) {
  arguments_.insert(arguments_.begin(), "--worker");  // everything after "--" is a file
  std::vector<std::vector<std::size_t>> shares = shares_of(verb, jobs, count);
  not_ready_ = shares.size();
  for (std::vector<std::size_t>& share : shares) start(std::move(share));
}

// Called by the thread that waits for the outcomes, because workers end with the thread that started them.
void Workers::start(std::vector<std::size_t> share) {
  std::vector<std::u16string> files;
  files.reserve(share.size());
  for (const std::size_t file : share) files.push_back(verb_.files[file]);
  const ordered_json input = {{"numbers", share}, {"share", verb_.share(files)}};
  Worker& worker = *workers_.emplace_back(std::make_unique<Worker>());
  worker.files = std::move(share);
  worker.process = start_this_program(arguments_);
  worker.reader = std::thread([this, &worker] { read(worker); });
  worker.process->write_input(input.dump() + "\n");
}

Workers::~Workers() {
  {
    std::unique_lock lock(mutex_);
    for (const auto& worker : workers_) {
      if (worker->has_ended || worker->files.empty() || !worker->process) continue;
      worker->process->interrupt();
      // A worker that waits for the word to begin reads only that.
      if (worker->is_waiting) worker->process->write_input("begin\n");
    }
    const auto end = std::chrono::steady_clock::now() + kLongestGoodbye;
    while (!all_ended() && news_.wait_until(lock, end) == std::cv_status::no_timeout) {
    }
  }
  for (const auto& worker : workers_) {
    if (worker->process) worker->process->end();
    if (worker->reader.joinable()) worker->reader.join();
  }
}

bool Workers::all_ended() const {
  return std::ranges::all_of(workers_, [](const auto& worker) { return worker->has_ended || !worker->process; });
}

void Workers::note(std::size_t file, FileOutcome outcome) {
  outcomes_.insert_or_assign(file, std::move(outcome));
  news_.notify_all();
}

void Workers::read(Worker& worker) {
  std::string line;
  while (worker.process->read_line(line)) {
    const std::lock_guard guard(mutex_);
    if (line == kReady) {
      worker.is_ready = true;
      --not_ready_;
      news_.notify_all();
      continue;
    }
    const ordered_json json = ordered_json::parse(line, nullptr, false);
    if (!json.is_object() || !json.contains("file")) continue;
    const std::size_t file = json["file"].get<std::size_t>();
    std::erase(worker.files, file);
    worker.done = file;
    note(file, {outcome_in(json), json["seconds"].get<double>()});
  }
  const int code = worker.process->wait();
  const std::lock_guard guard(mutex_);
  if (code == static_cast<int>(ExitCode::kInterrupted)) was_interrupted_ = true;
  note_end(worker);
}

void Workers::note_end(Worker& worker) {
  if (!worker.is_ready) --not_ready_;
  std::vector<std::size_t> failed = std::exchange(worker.files, {});
  // If one worker cannot even begin, another one would get no further.
  if (worker.is_ready && !failed.empty()) {
    lost_.push_back({worker.done, failed.front(), {failed.begin() + 1, failed.end()}});
    failed.resize(1);
  }
  for (const std::size_t file : failed) {
    FileOutcome outcome;
    outcome.outcome.ending = Outcome::kFailed;
    outcome.outcome.result = 1;
    outcome.outcome.messages.push_back({u"the process that worked on this file ended too early; repeat the command"});
    note(file, std::move(outcome));
  }
  worker.has_ended = true;
  news_.notify_all();
}

// The caller holds the mutex. A second word to a worker is never read.
void Workers::let_begin() {
  if (not_ready_ != 0) return;
  for (const auto& worker : workers_)
    if (std::exchange(worker->is_waiting, false) && !worker->has_ended) worker->process->write_input("begin\n");
}

void Workers::settle_folder_of(std::size_t file) const {
  const std::u16string place = verb_.workplace(verb_.files[file]);
  if (place.empty()) return;
  try {
    settle_folder(folder_of(ports().files->absolute(place))).reset();
  } catch (const failure&) {
    // The next run in that folder tries again, and reports a failure.
  }
}

void Workers::replace(const std::vector<Lost>& lost) {
  for (const Lost& each : lost) {
    if (each.before) settle_folder_of(*each.before);
    settle_folder_of(each.file);
    if (each.rest.empty()) continue;
    {
      const std::lock_guard guard(mutex_);
      ++not_ready_;
    }
    start(each.rest);
  }
}

FileOutcome Workers::outcome_of(std::size_t file) {
  std::unique_lock lock(mutex_);
  for (;;) {
    throw_if_interrupted();
    if (was_interrupted_) throw interruption();
    if (const std::vector<Lost> lost = std::exchange(lost_, {}); !lost.empty()) {
      lock.unlock();
      replace(lost);
      lock.lock();
    }
    let_begin();
    if (const auto found = outcomes_.find(file); found != outcomes_.end()) {
      FileOutcome outcome = std::move(found->second);
      outcomes_.erase(found);
      return outcome;
    }
    news_.wait_for(lock, kBetweenLooks);
  }
}

namespace {

// The parent exists as long as standard input is open.
std::string line_from_parent() {
  std::string line;
  if (!std::getline(std::cin, line)) throw interruption();
  return line;
}

}  // namespace

ordered_json read_share() {
  end_with_parent();
  // The line is read as a string, because the parser does not finish on a stream's iterators.
  return ordered_json::parse(line_from_parent());
}

void wait_for_others() {
  print_output(std::string(kReady) + "\n");
  static_cast<void>(line_from_parent());
}

std::string line_of(std::size_t file, const Outcome& outcome, double seconds) {
  ordered_json line = {{"file", file}, {"ending", static_cast<int>(outcome.ending)}, {"result", outcome.result}};
  line["produced"] = ordered_json::array();
  for (const ProducedName& each : outcome.produced) line["produced"].push_back({to_utf8(each.path), each.type});
  line["messages"] = ordered_json::array();
  for (const Message& each : outcome.messages)
    line["messages"].push_back({to_utf8(each.text), each.number, each.line, each.column});
  line["lines"] = outcome.lines;
  line["details"] = outcome.details;
  line["seconds"] = seconds;
  return line.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace kavo
