#include "cli/command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <map>

#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/run_in_folder.h"
#include "cli/verb.h"
#include "platform/console.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

enum ExitCode { kDone = 0, kFailed = 1, kWrongUsage = 2, kInterrupted = 130 };

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
      ->transform(CLI::CheckedTransformer(modes, CLI::ignore_case).description(""));
  app.footer("Example:\n  " + std::string(entry.example));
}

int run_verb(Verb& verb, const std::string& name, const Options& options) {
  const std::vector<std::string> files = options.files.empty() ? std::vector<std::string>{""} : options.files;
  ProgressBar bar(options.quiet ? ProgressBar::Mode::kNone : options.progress, files.size());
  Report report(name, options.json, options.quiet);
  verb.tell_step = [&bar](std::string step) { bar.rename(std::move(step)); };
  for (const std::string& file : options.files) verb.files.push_back(path_from_host(file));
  verb.start();
  for (const std::string& file : files) {
    throw_if_interrupted();
    const double started = ports().clock->seconds();
    bar.next_file(file);
    const std::u16string path = path_from_host(file);
    const Outcome outcome = run_in_folder(
        verb.workplace(path), [&] { return verb.run(path, [&](std::int16_t percent) { bar.report(percent); }); });
    bar.hide();
    report.add(file, outcome, ports().clock->seconds() - started);
  }
  const double started = ports().clock->seconds();
  bool has_outcome = false;
  const Outcome outcome = run_in_folder(verb.workplace(u""), [&] {
    const std::optional<Outcome> last = verb.finish();
    has_outcome = last.has_value();
    return last.value_or(Outcome());
  });
  if (has_outcome || outcome.ending != Outcome::kDone || !outcome.messages.empty())
    report.add("", outcome, ports().clock->seconds() - started);
  return report.finish();
}

int run_parsed(const Command& command, const Options& options) {
  PortsScope scope;
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
  try {
    return run_verb(*command.verb, full_name(command.entry), options);
  } catch (const failure& reason) {
    if (reason.is(FailureNumber::kInterrupted)) {
      std::fputs("kavo: interrupted\n", stderr);
      return kInterrupted;
    }
    std::fprintf(stderr, "kavo: %s\n", reason.what());
    return kFailed;
  }
}

}  // namespace

int run_command(std::vector<std::string> arguments) {
  CLI::App app("KAVO prepares documents for translation and rebuilds them.", "kavo");
  app.allow_windows_style_options(false);  // "/tmp/page.htm" is a file on every system
  app.require_subcommand(1);
  app.get_formatter()->label("SUBCOMMAND", "VERB");
  app.get_formatter()->label("OPTIONS", "options");
  app.set_version_flag("--version", "kavo " KAVO_VERSION);
  app.footer(
      "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 a check found a difference, 130 interrupted.\n"
      "kavo VERB --help tells more of each verb.");

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

  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    return run_parsed(*std::ranges::find_if(commands, [](const Command& c) { return c.app->parsed(); }), options);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kWrongUsage;
  }
}

}  // namespace kavo
