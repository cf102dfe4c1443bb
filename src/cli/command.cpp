#include "cli/command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <new>
#include <sstream>

#include "cli/command_description.h"
#include "cli/memory_reserve.h"
#include "cli/output.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/run_in_folder.h"
#include "cli/verb.h"
#include "cli/verb_names.h"
#include "cli/watched_files.h"
#include "common/folder_run.h"
#include "platform/console.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/version.h"

namespace kavo {
namespace {

struct Options {
  std::vector<std::string> files;
  std::string code_page;
  bool json = false;
  bool quiet = false;
  ProgressBar::Mode progress = ProgressBar::Mode::kAuto;
};

// One verb's part of the command line.
struct Command {
  VerbEntry entry;
  std::unique_ptr<Verb> verb;
  CLI::App* app;
};

std::string full_name(const VerbEntry& entry) {
  std::string name(entry.group);
  if (!name.empty()) name += ' ';
  return name += entry.name;
}

void add_common_options(CLI::App& app, const VerbEntry& entry, Options& options) {
  if (entry.takes_files) app.add_option("FILE", options.files, "The files to work on")->required()->type_name("");
  app.add_option("--code-page", options.code_page,
                 "ANSI code page of the documents: a number or utf-8 (else the system's, UTF-8 where it has none)")
      ->type_name("N");
  app.add_flag("--json", options.json, "One JSON object a line for each file");
  app.add_flag("-q,--quiet", options.quiet, "No messages and no progress: results and failures only");
  const std::map<std::string, ProgressBar::Mode> modes{
      {"auto", ProgressBar::Mode::kAuto}, {"bar", ProgressBar::Mode::kBar}, {"none", ProgressBar::Mode::kNone}};
  app.add_option("--progress", options.progress, "auto (a bar on a terminal), bar or none")
      ->type_name("WHEN")
      ->transform(CLI::CheckedTransformer(modes, CLI::ignore_case).description("{auto,bar,none}"));
  app.footer("Example:\n  " + std::string(entry.example));
}

Outcome outcome_of(const failure& reason) {
  Outcome outcome;
  outcome.ending = Outcome::kFailed;
  outcome.result = 1;
  outcome.messages.push_back({reason.description()});
  outcome.details["error"] = reason.number();
  return outcome;
}

// Runs one step of a verb as one run in its folder; whatever ends it but an interruption is its outcome, so that other
// files follow.
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
    // A defect of this program, whose own text says nothing to anybody but its makers.
    return with_reports(
        outcome_of(failure(FailureNumber::kInternal,
                           u"this file brought an internal error to light; please report it together with the file")));
  }
}

// The last step of a batch belongs to no single file. A failure there that names no file gets `place`, the file or
// folder that the step worked on.
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

ExitCode run_verb(Verb& verb, const VerbEntry& entry, const Options& options, WatchedFiles& watched) {
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
  const auto add = [&](const std::string& file, Outcome outcome, double started) {
    for (Message& message : outcome.messages)
      message.text = watched.in_host_form(FolderRun::without_scratch_folder(message.text));
    report.add(file, outcome, ports().clock->seconds() - started);
  };
  if (entry.takes_files && !files.empty()) working_on(files.front().c_str());
  verb.tell_step = [&bar](std::string step) { bar.rename(std::move(step)); };
  verb.in_host_form = [&watched](std::u16string text) { return watched.in_host_form(std::move(text)); };
  verb.start();
  for (const std::string& file : files) {
    if (entry.takes_files) working_on(file.c_str());
    try {
      throw_if_interrupted();
      throw_if_memory_ran_out();
      watched.forget();
      const double started = ports().clock->seconds();
      bar.next_file(file);
      const std::u16string path = path_from_host(file);
      const Outcome outcome = outcome_from(verb.workplace(path), [&] {
        if (entry.takes_files) refuse_folder(path);
        return verb.run(path, [&](std::int16_t percent) {
          throw_if_memory_ran_out();
          bar.report(percent);
        });
      });
      bar.hide();
      add(file, outcome, started);
    } catch (const std::bad_alloc&) {
      // Not even enough for the report.
      tell_no_memory();
      report.add_failed();
    }
    keep_memory_back();
  }
  const double started = ports().clock->seconds();
  bool has_outcome = false;
  const std::u16string workplace = verb.workplace(u"");
  Outcome outcome = outcome_from(workplace, [&] {
    const std::optional<Outcome> last = verb.finish();
    has_outcome = last.has_value();
    return last.value_or(Outcome());
  });
  if (!workplace.empty() || !files.empty())
    name_place(outcome, workplace.empty() ? path_from_host(files.back()) : workplace);
  if (has_outcome || outcome.ending != Outcome::kDone || !outcome.messages.empty()) add("", outcome, started);
  return report.finish();
}

ExitCode run_parsed(const Command& command, const Options& options) {
  WatchedFiles watched(*ports().files);
  PortsScope scope;
  ports().files = &watched;
  std::unique_ptr<CodePage> code_page;
  if (!options.code_page.empty()) {
    try {
      code_page = make_code_page(options.code_page);
    } catch (const failure& reason) {
      throw CLI::ValidationError("--code-page", reason.what());
    }
    ports().code_page = code_page.get();
  }
  command.verb->check_usage(options.files.size());
  ExitCode code = ExitCode::kFailed;
  try {
    code = run_verb(*command.verb, command.entry, options, watched);
  } catch (const interruption&) {
    std::fputs("kavo: interrupted\n", stderr);
    code = ExitCode::kInterrupted;
  } catch (const failure& reason) {
    std::fprintf(stderr, "kavo: %s\n", to_utf8(watched.in_host_form(reason.description())).c_str());
  } catch (const std::bad_alloc&) {
    tell_no_memory();
  }
  working_on("");
  return code;
}

}  // namespace

ExitCode run_command(std::vector<std::string> arguments) {
  CLI::App app("KAVO prepares documents for translation and rebuilds them.", "kavo");
  app.allow_windows_style_options(false);  // "/tmp/page.htm" is a file on every system
  app.require_subcommand(1);
  app.get_formatter()->label("SUBCOMMAND", "VERB");
  app.get_formatter()->label("OPTIONS", "options");
  app.set_version_flag("--version", "kavo " KAVO_VERSION);
  app.footer(
      "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 a check found a difference, 130 interrupted.\n"
      "kavo help VERB says more about each verb.");

  Options options;
  std::map<std::string_view, CLI::App*> groups{{"", &app}};
  for (const VerbGroup& group : verb_groups())
    groups[group.name] =
        app.add_subcommand(std::string(group.name), std::string(group.summary))->require_subcommand(1)->group("Verbs");

  std::vector<Command> commands;
  for (const VerbEntry& entry : all_verbs()) {
    CLI::App* verb_app = groups.at(entry.group)->add_subcommand(std::string(entry.name), std::string(entry.summary));
    verb_app->group(entry.is_listed ? "Verbs" : "");
    commands.push_back({entry, entry.make(), verb_app});
    commands.back().verb->add_options(*verb_app);
    add_common_options(*verb_app, entry, options);
  }

  if (arguments == std::vector<std::string>{"help", "--json"}) {
    print_output(description_of(app).dump(2) + "\n");
    return ExitCode::kDone;
  }
  try {
    arguments = with_verb_first(app, std::move(arguments));
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    return run_parsed(*std::ranges::find_if(commands, [](const Command& c) { return c.app->parsed(); }), options);
  } catch (const CLI::ParseError& error) {
    std::ostringstream help, complaint;
    const bool is_done = app.exit(error, help, complaint) == 0;
    print_output(help.str());
    std::fputs(complaint.str().c_str(), stderr);
    return is_done ? ExitCode::kDone : ExitCode::kWrongUsage;
  }
}

}  // namespace kavo
