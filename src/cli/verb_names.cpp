#include "cli/verb_names.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

#include "common/nearest.h"

namespace kavo {
namespace {

std::vector<const CLI::App*> verbs_of(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* verb_of(const CLI::App& app, const std::string& name) {
  const auto verbs = verbs_of(app);
  const auto found = std::ranges::find(verbs, name, [](const CLI::App* verb) { return verb->get_name(); });
  return found == verbs.end() ? nullptr : *found;
}

bool is_group(const CLI::App& app) { return !verbs_of(app).empty(); }

// True when the option's value is the next argument. The verb is not known yet, so the options of all verbs count.
bool takes_next(const CLI::App& app, const std::string& option) {
  if (option.find('=') != std::string::npos) return false;
  const auto* const known = app.get_option_no_throw(option);
  if (known != nullptr) return known->get_items_expected_min() > 0;
  return std::ranges::any_of(verbs_of(app), [&](const CLI::App* verb) { return takes_next(*verb, option); });
}

// Names to compare a mistyped verb with, each with what to write instead.
void collect_names(const CLI::App& app, const std::string& before, std::vector<std::string>& names,
                   std::vector<std::string>& full_names) {
  for (const CLI::App* verb : verbs_of(app)) {
    if (verb->get_group().empty()) continue;  // not listed in the help either
    names.push_back(verb->get_name());
    full_names.push_back(before + verb->get_name());
    collect_names(*verb, full_names.back() + " ", names, full_names);
  }
}

[[noreturn]] void throw_unknown(const CLI::App& app, const std::string& before, const std::string& typed) {
  std::vector<std::string> names, full_names;
  collect_names(app, before, names, full_names);
  const std::string_view near = nearest(typed, {names.begin(), names.end()}).front();
  const auto place = std::ranges::find(names, near) - names.begin();
  throw CLI::ParseError("there is no verb \"" + before + typed + "\"; the nearest is \"" +
                            full_names[static_cast<std::size_t>(place)] + "\"",
                        CLI::ExitCodes::ExtrasError);
}

}  // namespace

std::vector<std::string> with_verb_first(const CLI::App& app, std::vector<std::string> arguments) {
  auto verb = arguments.begin();
  while (verb != arguments.end() && verb->starts_with('-') && *verb != "--")
    verb += takes_next(app, *verb) && std::next(verb) != arguments.end() ? 2 : 1;
  if (verb == arguments.end() || *verb == "--") return arguments;
  std::vector<std::string> options(arguments.begin(), verb);
  const bool asks_for_help = *verb == "help";
  std::vector<std::string> ordered, rest(asks_for_help ? std::next(verb) : verb, arguments.end());
  const CLI::App* known = &app;
  std::string before;
  while (!rest.empty() && is_group(*known) && !rest.front().starts_with('-')) {
    const CLI::App* const next = verb_of(*known, rest.front());
    if (next == nullptr) throw_unknown(*known, before, rest.front());
    before += rest.front() + " ";
    ordered.push_back(std::move(rest.front()));
    rest.erase(rest.begin());
    known = next;
  }
  if (asks_for_help) {
    ordered.push_back("--help");
    return ordered;
  }
  ordered.insert(ordered.end(), options.begin(), options.end());
  ordered.insert(ordered.end(), rest.begin(), rest.end());
  return ordered;
}

}  // namespace kavo
