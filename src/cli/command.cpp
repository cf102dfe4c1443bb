#include "cli/command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <new>
#include <sstream>

#include "cli/command_description.h"
#include "cli/folder_options.h"
#include "cli/memory_reserve.h"
#include "cli/output.h"
#include "cli/progress_bar.h"
#include "cli/project_file.h"
#include "cli/project_registry.h"
#include "cli/shared_settings.h"
#include "cli/verb.h"
#include "cli/verb_names.h"
#include "cli/verb_run.h"
#include "cli/watched_files.h"
#include "platform/console.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/version.h"
#include "workflow/scratch_registry.h"

namespace kavo {
namespace {

// One verb's part of the command line.
struct Command {
  VerbEntry entry;
  std::unique_ptr<Verb> verb;
  CLI::App* app;
};

void add_common_options(CLI::App& app, const VerbEntry& entry, RunOptions& options) {
  if (entry.takes_files) app.add_option("FILE", options.files, "The files to work on")->required()->type_name("");
  app.add_option(
         "--code-page", options.code_page,
         "ANSI code page of the documents: a number or utf-8 (default: the system's, or UTF-8 where it has none)")
      ->type_name("N");
  app.add_flag("--json", options.json, "One JSON object a line for each file");
  app.add_flag("-q,--quiet", options.quiet, "No messages and no progress: results and failures only");
  const std::map<std::string, ProgressBar::Mode> modes{
      {"auto", ProgressBar::Mode::kAuto}, {"bar", ProgressBar::Mode::kBar}, {"none", ProgressBar::Mode::kNone}};
  app.add_option("--progress", options.progress, "auto (a bar on a terminal), bar or none")
      ->type_name("WHEN")
      ->transform(CLI::CheckedTransformer(modes, CLI::ignore_case).description("{auto,bar,none}"));
  if (entry.can_share) {
    app.add_option("-j,--jobs", options.jobs,
                   "How many processes share the work, each with its own folders (default: one for each core)")
        ->type_name("N")
        ->check(CLI::Range(1, 256));
    app.add_flag("--worker", options.is_worker, "")->group("");
  }
  if (uses_project(full_name(entry)))
    app.add_flag("--no-project", options.no_project, "Do not read the project file (kavo.json)");
  app.footer("Example:\n  " + std::string(entry.example));
}

// Runs a verb with what the command line and the project say.
ExitCode run_parsed(const Command& command, const RunOptions& options, const std::optional<ProjectFile>& project) {
  WatchedFiles watched(*ports().files);
  ProjectRegistry registry(*ports().registry);
  PortsScope scope;
  ports().files = &watched;
  if (project) {
    ports().registry = &registry;
    project->store_settings();
    registry.close();
    if (FolderOptions* const folders = command.verb->folder_options())
      folders->project_folders(project->folders(command.entry.name));
  }
  // Rebuilding sets the font map of the document's folder. When several processes work at once, each needs its own.
  std::optional<ScratchRegistry> registry_of_run;
  if (command.entry.can_share && (options.is_worker || !settings_are_shared()))
    ports().registry = &registry_of_run.emplace(*ports().registry);
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
    code = options.is_worker ? run_share(*command.verb, command.entry, watched)
                             : run_verb(*command.verb, command.entry, options, watched);
  } catch (const interruption&) {
    if (!options.is_worker) std::fputs("kavo: interrupted\n", stderr);
    code = ExitCode::kInterrupted;
  } catch (const failure& reason) {
    std::fprintf(stderr, "kavo: %s\n", to_utf8(watched.in_host_form(reason.description())).c_str());
  }
  working_on("");
  return code;
}

// Options that must be given, on the command line or in the project file. The parser alone sees only the first.
class NeededOptions {
 public:
  explicit NeededOptions(const std::vector<Command>& commands) {
    for (const Command& command : commands)
      for (CLI::Option* const option : command.app->get_options())
        if (uses_project(full_name(command.entry)) && option->get_required())
          options_.emplace_back(command.app, option);
    require(false);
  }
  ~NeededOptions() { require(true); }
  NeededOptions(const NeededOptions&) = delete;
  NeededOptions& operator=(const NeededOptions&) = delete;

  // Throws CLI::RequiredError.
  void check(const CLI::App* app) const {
    for (const auto& [owner, option] : options_)
      if (owner == app && option->empty()) throw CLI::RequiredError(option->get_name());
  }

 private:
  void require(bool is_required) {
    for (const auto& [owner, option] : options_) option->required(is_required);
  }

  std::vector<std::pair<const CLI::App*, CLI::Option*>> options_;
};

// Throws CLI::ParseError, and `failure` for what is wrong in the project file.
ExitCode parse_and_run(CLI::App& app, std::vector<std::string> arguments, const std::vector<Command>& commands,
                       const RunOptions& options) {
  const NeededOptions needed(commands);
  app.parse(std::move(arguments));
  const Command& command = *std::ranges::find_if(commands, [](const Command& c) { return c.app->parsed(); });
  if (!options.files.empty()) working_on(options.files.front().c_str());
  std::optional<ProjectFile> project;
  if (uses_project(full_name(command.entry)) && !options.no_project) project = ProjectFile::find();
  if (project) {
    project->complete(*command.app, command.entry.name);
    if (project->name() != kProjectFile && !options.quiet && !options.is_worker)
      std::fprintf(stderr, "kavo: works in the project %s\n", project->name().c_str());
  }
  needed.check(command.app);
  return run_parsed(command, options, project);
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

  RunOptions options;
  options.arguments = arguments;
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
    return parse_and_run(app, std::move(arguments), commands, options);
  } catch (const failure& reason) {
    std::fprintf(stderr, "kavo: %s\n", reason.what());
    // Wrong content of the project file is wrong usage. A file that cannot be read is not.
    return reason.is(FailureNumber::kInvalidCall) ? ExitCode::kWrongUsage : ExitCode::kFailed;
  } catch (const CLI::ParseError& error) {
    std::ostringstream help, complaint;
    const bool is_done = app.exit(error, help, complaint) == 0;
    print_output(help.str());
    std::fputs(complaint.str().c_str(), stderr);
    return is_done ? ExitCode::kDone : ExitCode::kWrongUsage;
  } catch (const std::bad_alloc&) {
    tell_no_memory();
    return ExitCode::kFailed;
  }
}

}  // namespace kavo
