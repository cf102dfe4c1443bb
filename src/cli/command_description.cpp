#include "cli/command_description.h"

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {
namespace {

using nlohmann::ordered_json;

// The names in "WHICH:{likely,all,none}", which is how the help shows an option's choices.
std::vector<std::string> choices_in(const std::string& type) {
  const std::size_t begin = type.find('{'), end = type.find('}');
  std::vector<std::string> choices;
  if (begin == std::string::npos || end == std::string::npos) return choices;
  std::istringstream names(type.substr(begin + 1, end - begin - 1));
  for (std::string name; std::getline(names, name, ',');) choices.push_back(name);
  return choices;
}

ordered_json described(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  if (names.empty()) names.push_back(option.get_name());  // an argument
  return {{"names", names},
          {"value", option.get_items_expected_max() == 0 ? "" : type.substr(0, type.find(':'))},
          {"choices", choices_in(type)},
          {"help", option.get_description()},
          {"required", option.get_required()},
          {"many", option.get_items_expected_max() > 1}};
}

void describe_options(const CLI::App& app, ordered_json& description) {
  description["arguments"] = description["options"] = ordered_json::array();
  for (const CLI::Option* option : app.get_options([](const CLI::Option* each) { return !each->get_group().empty(); }))
    description[option->get_positional() ? "arguments" : "options"].push_back(described(*option));
}

std::vector<std::string> examples_in(const std::string& footer) {
  std::vector<std::string> examples;
  std::istringstream lines(footer);
  std::string line;
  std::getline(lines, line);  // "Example:"
  while (std::getline(lines, line)) examples.push_back(line.substr(line.find_first_not_of(' ')));
  return examples;
}

void describe_verbs(const CLI::App& app, const std::string& before, ordered_json& verbs) {
  for (const CLI::App* verb : app.get_subcommands([](const CLI::App* each) { return !each->get_group().empty(); })) {
    const std::string name = before + verb->get_name();
    if (!verb->get_subcommands([](const CLI::App*) { return true; }).empty()) {
      describe_verbs(*verb, name + " ", verbs);
      continue;
    }
    ordered_json described{
        {"name", name}, {"summary", verb->get_description()}, {"examples", examples_in(verb->get_footer())}};
    describe_options(*verb, described);
    verbs.push_back(std::move(described));
  }
}

}  // namespace

ordered_json description_of(const CLI::App& app) {
  ordered_json description{
      {"summary", app.get_description()}, {"version", app.version()}, {"footer", app.get_footer()}};
  describe_options(app, description);
  description["verbs"] = ordered_json::array();
  describe_verbs(app, "", description["verbs"]);
  return description;
}

}  // namespace kavo
