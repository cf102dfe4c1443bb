#include "cli/workers.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <iterator>
#include <numeric>
#include <set>

#include "cli/exit_code.h"
#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/desktop.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

using nlohmann::ordered_json;

constexpr auto kBetweenLooks = std::chrono::milliseconds(50);

// Large jobs first, each to the worker with the least so far.
std::vector<std::vector<std::size_t>> shares_of(const Verb& verb, std::vector<Job> jobs, std::size_t count) {
  const auto bytes_of = [&](const Job& job) {
    return std::accumulate(job.begin(), job.end(), std::uint64_t{0}, [&](std::uint64_t sum, std::size_t file) {
      constexpr std::uint64_t kEachFile = 16 * 1024;  // what opening and naming files costs beside their bytes
      const auto info = ports().files->info(verb.files[file]);
      return sum + kEachFile + (info ? info->size : 0);
    });
  };
  std::vector<std::pair<std::uint64_t, Job>> sized;
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

Workers::Workers(const Verb& verb, const std::vector<Job>& jobs, std::size_t count,
                 std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "--worker");  // what stands behind "--" are files
  std::vector<std::string> inputs;
  for (std::vector<std::size_t>& share : shares_of(verb, jobs, count)) {
    std::vector<std::u16string> files;
    for (const std::size_t file : share) files.push_back(verb.files[file]);
    const ordered_json input = {{"numbers", share}, {"share", verb.share(files)}};
    try {
      inputs.push_back(input.dump() + "\n");
    } catch (const nlohmann::json::type_error&) {
      throw failure(FailureNumber::kInvalidCall, u"a name is no Unicode; run the command with --jobs 1");
    }
    workers_.push_back(std::make_unique<Worker>());
    workers_.back()->files = std::move(share);
  }
  for (const auto& worker : workers_) worker->process = start_this_program(arguments);
  for (std::size_t i = 0; i < workers_.size(); ++i) {
    Worker& worker = *workers_[i];
    worker.reader = std::thread([this, &worker] { read(worker); });
    worker.process->write_input(inputs[i]);
  }
}

Workers::~Workers() {
  bool is_idle = true;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& worker : workers_) is_idle = is_idle && worker->files.empty();
  }
  if (!is_idle)
    for (const auto& worker : workers_)
      if (worker->process) worker->process->interrupt();
  for (const auto& worker : workers_)
    if (worker->reader.joinable()) worker->reader.join();
}

void Workers::note(std::size_t file, FileOutcome outcome) {
  outcomes_.insert_or_assign(file, std::move(outcome));
  news_.notify_all();
}

void Workers::read(Worker& worker) {
  std::string line;
  while (worker.process->read_line(line)) {
    const ordered_json json = ordered_json::parse(line, nullptr, false);
    if (!json.is_object() || !json.contains("file")) continue;
    const std::size_t file = json["file"].get<std::size_t>();
    const std::lock_guard lock(mutex_);
    std::erase(worker.files, file);
    note(file, {outcome_in(json), json["seconds"].get<double>()});
  }
  const int code = worker.process->wait();
  const std::lock_guard lock(mutex_);
  if (code == static_cast<int>(ExitCode::kInterrupted)) was_interrupted_ = true;
  for (const std::size_t file : worker.files) {
    Outcome outcome;
    outcome.ending = Outcome::kFailed;
    outcome.result = 1;
    outcome.messages.push_back(
        {u"the process that worked on this file or one before it ended too early; repeat the command"});
    note(file, {std::move(outcome), 0});
  }
  worker.files.clear();
  news_.notify_all();
}

FileOutcome Workers::outcome_of(std::size_t file) {
  std::unique_lock lock(mutex_);
  for (;;) {
    throw_if_interrupted();
    if (was_interrupted_) throw interruption();
    if (const auto found = outcomes_.find(file); found != outcomes_.end()) {
      FileOutcome outcome = std::move(found->second);
      outcomes_.erase(found);
      return outcome;
    }
    news_.wait_for(lock, kBetweenLooks);
  }
}

ordered_json read_share() {
  end_with_parent();
  return ordered_json::parse(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
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
