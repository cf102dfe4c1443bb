#include "cli/verb_run.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <thread>
#include <utility>

#include "cli/memory_reserve.h"
#include "cli/output.h"
#include "cli/report.h"
#include "cli/run_in_folder.h"
#include "cli/workers.h"
#include "common/folder_run.h"
#include "common/run_series.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

Outcome outcome_of(const failure& reason) {
  Outcome outcome;
  outcome.ending = Outcome::kFailed;
  outcome.result = 1;
  outcome.messages.push_back({reason.description()});
  outcome.details["error"] = reason.number();
  return outcome;
}

// Runs one step of a verb as one run in its folder; any exception other than an interruption becomes its outcome, so
// that the other files follow.
Outcome outcome_from(const std::u16string& workplace, const std::function<Outcome()>& step) {
  MessageList reports;
  const auto with_reports = [&](Outcome outcome) {
    outcome.messages.insert(outcome.messages.begin(), reports.begin(), reports.end());
    return outcome;
  };
  try {
    return with_reports(run_in_folder(workplace, reports, step));
  } catch (const interruption&) {
    for (const Message& report : reports) std::fprintf(stderr, "kavo: %s\n", to_utf8(report.text).c_str());
    throw;
  } catch (const failure& reason) {
    return with_reports(outcome_of(reason));
  } catch (const std::bad_alloc&) {
    return with_reports(outcome_of(failure(FailureNumber::kOutOfMemory, to_utf16(kNotEnoughMemory))));
  } catch (const std::exception&) {
    // This is a defect of the program. The exception's own text only helps its developers.
    return with_reports(outcome_of(failure(
        FailureNumber::kInternal, u"this file caused an internal error; please report it together with the file")));
  }
}

// The last step of a batch does not belong to a single file, and some verbs take none. A failure there that names no
// file gets `place`, the file or folder that the step worked on.
void name_place(Outcome& outcome, const std::u16string& place) {
  if (place.empty() || outcome.ending != Outcome::kFailed) return;
  const std::size_t folder_end = place.rfind(u'\\');
  const std::u16string known = folder_end == std::u16string::npos ? place : place.substr(0, folder_end);
  for (Message& message : outcome.messages) {
    const bool names_file = message.text.find(known) != std::u16string::npos ||
                            message.text.find(to_utf16(path_to_host(known))) != std::u16string::npos;
    if (!names_file) message.text = to_utf16(path_to_host(place)) + u": " + message.text;
  }
}

// People name a folder when they mean all files in it.
void refuse_folder(const std::u16string& file) {
  const std::optional<FileInfo> info = ports().files->info(file);
  if (info && info->is_folder) throw failure(FailureNumber::kPathFileAccess, u"this is a folder; name the files in it");
}

Outcome outcome_of_file(Verb& verb, const VerbEntry& entry, const std::u16string& path, ProgressBar& bar) {
  return outcome_from(verb.workplace(path), [&] {
    if (entry.takes_files) refuse_folder(path);
    return verb.run(path, [&](std::int16_t percent) {
      throw_if_memory_ran_out();
      bar.report(percent);
    });
  });
}

// The runs of one command. They are a series when the verb works in folders; other verbs make folders of their own, which
// nothing may keep open when they are removed.
class VerbSeries {
 public:
  explicit VerbSeries(const Verb& verb) {
    if (verb.files.empty() || verb.workplace(verb.files.front()).empty()) return;
    series_.emplace([this](const std::u16string& text) { reports_.push_back({text}); });
  }
  void end() { series_.reset(); }
  // What the series had to say since the last outcome is said with this one.
  void report_in(Outcome& outcome) {
    std::ranges::move(std::exchange(reports_, {}), std::back_inserter(outcome.messages));
  }

 private:
  MessageList reports_;
  std::optional<RunSeries> series_;
};

void put_into_host_form(Outcome& outcome, const WatchedFiles& watched) {
  for (Message& message : outcome.messages)
    message.text = watched.in_host_form(FolderRun::without_scratch_folder(message.text));
}

// Null when one process does all the work.
std::unique_ptr<Workers> workers_for(const Verb& verb, const RunOptions& options) {
  constexpr std::size_t kManyFiles = 16;  // fewer are done before another process has started
  std::size_t count = options.jobs;
  if (count == 0 && verb.files.size() >= kManyFiles) count = std::thread::hardware_concurrency();
  if (count < 2) return nullptr;
  const std::vector<Job> jobs = verb.jobs();
  if (jobs.size() < 2 || !Workers::can_share(verb)) return nullptr;
  return std::make_unique<Workers>(verb, jobs, count, options.arguments);
}

void connect(Verb& verb, ProgressBar& bar, WatchedFiles& watched) {
  verb.tell_step = [&bar](std::string step) { bar.rename(std::move(step)); };
  verb.in_host_form = [&watched](std::u16string text) { return watched.in_host_form(std::move(text)); };
}

}  // namespace

std::string full_name(const VerbEntry& entry) {
  std::string name(entry.group);
  if (!name.empty()) name += ' ';
  return name += entry.name;
}

ExitCode run_verb(Verb& verb, const VerbEntry& entry, const RunOptions& options, WatchedFiles& watched) {
  std::vector<std::string> files = options.files;
  for (const std::string& file : files) verb.files.push_back(path_from_host(file));
  const std::vector<std::u16string> given = verb.files;
  verb.find_files();
  if (verb.files != given) {
    files.clear();
    for (const std::u16string& file : verb.files) files.push_back(path_to_host(file));
  }
  if (!entry.takes_files) files.push_back("");
  ProgressBar bar(options.quiet ? ProgressBar::Mode::kNone : options.progress, files.size());
  Report report(full_name(entry), options.json, options.quiet);
  const auto add = [&](const std::string& file, Outcome outcome, double seconds) {
    put_into_host_form(outcome, watched);
    report.add(file, outcome, seconds);
  };
  if (!files.empty()) working_on((entry.takes_files ? files.front() : path_to_host(verb.workplace(u""))).c_str());
  connect(verb, bar, watched);
  verb.start();
  const std::unique_ptr<Workers> workers = workers_for(verb, options);
  VerbSeries series(verb);
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string& file = files[i];
    if (entry.takes_files) working_on(file.c_str());
    try {
      throw_if_interrupted();
      throw_if_memory_ran_out();
      watched.forget();
      const double started = ports().clock->seconds();
      bar.next_file(file);
      bar.report(0);
      FileOutcome done;
      if (workers)
        done = workers->outcome_of(i);
      else
        done = {outcome_of_file(verb, entry, path_from_host(file), bar), ports().clock->seconds() - started};
      bar.hide();
      series.report_in(done.outcome);
      if (!entry.takes_files) name_place(done.outcome, verb.workplace(u""));
      verb.add_up(done.outcome);
      add(file, std::move(done.outcome), done.seconds);
    } catch (const std::bad_alloc&) {
      // There is not even enough memory for the report.
      tell_no_memory();
      report.add_failed();
    }
    keep_memory_back();
  }
  series.end();
  const double started = ports().clock->seconds();
  bool has_outcome = false;
  const std::u16string workplace = verb.workplace(u"");
  Outcome outcome = outcome_from(workplace, [&] {
    const std::optional<Outcome> last = verb.finish();
    has_outcome = last.has_value();
    return last.value_or(Outcome());
  });
  series.report_in(outcome);
  if (!workplace.empty() || !files.empty())
    name_place(outcome, workplace.empty() ? path_from_host(files.back()) : workplace);
  if (has_outcome || outcome.ending != Outcome::kDone || !outcome.messages.empty())
    add("", outcome, ports().clock->seconds() - started);
  return report.finish();
}

ExitCode run_share(Verb& verb, const VerbEntry& entry, WatchedFiles& watched) {
  const nlohmann::ordered_json share = read_share();
  verb.take_share(share.at("share"));
  const std::vector<std::size_t> numbers = share.at("numbers").get<std::vector<std::size_t>>();
  ProgressBar bar(ProgressBar::Mode::kNone, numbers.size());
  connect(verb, bar, watched);
  verb.start();
  wait_for_others();
  VerbSeries series(verb);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    throw_if_interrupted();
    throw_if_memory_ran_out();
    watched.forget();
    const double started = ports().clock->seconds();
    Outcome outcome = outcome_of_file(verb, entry, verb.files[i], bar);
    if (i + 1 == numbers.size()) series.end();
    series.report_in(outcome);
    put_into_host_form(outcome, watched);
    print_output(line_of(numbers[i], outcome, ports().clock->seconds() - started));
    keep_memory_back();
  }
  return ExitCode::kDone;
}

}  // namespace kavo
