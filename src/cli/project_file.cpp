#include "cli/project_file.h"

#include <algorithm>
#include <filesystem>

#include "cli/option_values.h"
#include "cli/setting_table.h"
#include "common/block_reader.h"
#include "common/nearest.h"
#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/program_folder.h"
#include "platform/unicode.h"
#include "suite/filters/filter_options.h"

namespace kavo {
namespace {

using nlohmann::ordered_json;

// With "\" at its end.
std::u16string current_folder() {
  try {
    return folder_of(ports().files->absolute(to_utf16(kProjectFile)));
  } catch (const failure& reason) {
    throw failure(reason.number(), u"the current folder cannot be found: " + reason.description(), reason.source());
  }
}

// Nothing where there is no such file.
std::optional<std::string> text_of_project(const std::u16string& path) {
  try {
    const auto info = ports().files->info(path);
    if (!info || info->is_folder) return std::nullopt;
    BlockReader reader(path);
    while (reader.more()) {
    }
    return std::string(reader.window());
  } catch (const failure& reason) {
    throw failure(reason.number(),
                  to_utf16(path_to_host(path)) + u" cannot be read: " + reason.description() +
                      u" (--no-project runs without the project file)",
                  reason.source());
  }
}

const ProjectKey& key_row(std::string_view key) { return *std::ranges::find(project_keys(), key, &ProjectKey::key); }

bool is_text_or_number(const ordered_json& value) { return value.is_string() || value.is_number_unsigned(); }

bool is_texts(const ordered_json& value) {
  const auto is_text = [](const ordered_json& each) { return each.is_string(); };
  return value.is_string() || (value.is_array() && !value.empty() && std::ranges::all_of(value, is_text));
}

bool fits(KeyKind kind, const ordered_json& value) {
  switch (kind) {
    case KeyKind::kVersion:
      return value == kProjectVersion;
    case KeyKind::kPath:
    case KeyKind::kLanguage:
      return value.is_string();
    case KeyKind::kPaths:
    case KeyKind::kTexts:
    case KeyKind::kLanguages:
      return is_texts(value);
    case KeyKind::kCodePage:
      return is_text_or_number(value);
    case KeyKind::kCodePages:
      return value.is_object() ? std::ranges::all_of(value, is_text_or_number) : is_text_or_number(value);
    case KeyKind::kSwitch:
      return value.is_boolean();
    case KeyKind::kSettings:
    case KeyKind::kProfile:
      return value.is_object();
  }
  return false;
}

// A value as a command line writes it; for a list, its first value.
std::string word_of(const ordered_json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "on" : "off";
  return value.dump();
}

// The filters that have options.
std::vector<std::string_view> profile_groups() {
  std::vector<std::string_view> groups;
  for (const FilterOption& option : filter_options()) {
    const std::string_view group = option.key.substr(0, option.key.find('.'));
    if (is_lasting(option) && std::ranges::find(groups, group) == groups.end()) groups.push_back(group);
  }
  return groups;
}

// Converts a list of languages, which the file may name by tags, to codes. An unknown one stays, and its option refuses
// it.
std::string as_codes(std::string languages) {
  language_list_value()(languages);
  return languages;
}

std::string as_on_a_command_line(const Setting& setting, const ordered_json& value) {
  if (!value.is_array()) return word_of(value);
  std::string list;
  for (const ordered_json& each : value)
    (list += list.empty() ? "" : std::string(1, setting.list_separator)) += word_of(each);
  return list;
}

bool is_value(const Setting& setting, const ordered_json& value) {
  const auto is_word = [](const ordered_json& each) { return each.is_string() || each.is_number_unsigned(); };
  if (value.is_array()) return setting.list_separator != 0 && std::ranges::all_of(value, is_word);
  return value.is_boolean() ? setting.values.starts_with("on or off") : is_word(value);
}

}  // namespace

std::optional<ProjectFile> ProjectFile::find() {
  const std::u16string name = to_utf16(kProjectFile), home = home_folder();
  std::u16string folder = current_folder();
  for (std::string way;; way += "../") {
    if (const std::optional<std::string> text = text_of_project(folder + name)) return ProjectFile(*text, way);
    folder.pop_back();
    const std::size_t end = folder.rfind(u'\\');
    if (end == std::u16string::npos || equal_ignoring_case(folder, home)) return std::nullopt;
    folder.resize(end + 1);
  }
}

ProjectFile::ProjectFile(std::string_view text, std::string folder)
    : folder_(std::move(folder)), json_(text, folder_ + std::string(kProjectFile)) {
  if (!json_.value().is_object()) refuse("", "a project file must be a JSON object: {\"version\": 1, ...}");
  if (!json_.value().contains("version")) refuse("", "the key \"version\" is missing: \"version\": 1");
  for (const auto& [name, value] : json_.value().items()) {
    const auto row = std::ranges::find(project_keys(), name, &ProjectKey::key);
    if (row == project_keys().end()) {
      std::vector<std::string_view> names;
      for (const ProjectKey& known : project_keys()) names.push_back(known.key);
      refuse(pointer_step(name), "there is no key \"" + name + "\"; the nearest is \"" +
                                     std::string(nearest(name, std::move(names)).front()) + "\"");
    }
    check(*row, value);
  }
}

void ProjectFile::refuse(const std::string& pointer, const std::string& problem) const {
  throw failure(FailureNumber::kInvalidCall, to_utf16(json_.place(pointer) + problem));
}

void ProjectFile::check(const ProjectKey& key, const ordered_json& value) const {
  const std::string pointer = pointer_step(key.key);
  if (!fits(key.kind, value))
    refuse(pointer, "\"" + std::string(key.key) + "\" can be " + std::string(values_of(key.kind)) + ", such as " +
                        std::string(key.example));
  if (key.kind == KeyKind::kSettings) check_settings(pointer, value, "");
  if (key.kind != KeyKind::kProfile) return;
  for (const auto& [group, options] : value.items()) {
    const std::string place = pointer + pointer_step(group);
    if (const auto groups = profile_groups(); std::ranges::find(groups, group) == groups.end())
      refuse(place, "there is no filter \"" + group + "\" with options; the nearest is \"" +
                        std::string(nearest(group, groups).front()) + "\"");
    if (!options.is_object())
      refuse(place, "\"" + group + "\" can be an object of the filter's options, such as " + std::string(key.example));
    check_settings(place, options, group + ".");
  }
}

void ProjectFile::check_settings(const std::string& pointer, const ordered_json& settings,
                                 const std::string& group) const {
  for (const auto& [name, value] : settings.items()) check_setting(pointer + pointer_step(name), group, name, value);
}

void ProjectFile::check_setting(const std::string& place, const std::string& group, const std::string& name,
                                const ordered_json& value) const {
  const Setting* const setting = find_setting(group + name);
  if (setting == nullptr)
    refuse(place,
           "there is no setting \"" + group + name + "\"; the nearest is \"" + nearest_setting(group + name) + "\"");
  if (setting->starts_program)
    refuse(place, "\"" + name + "\" names a program that is started, which a project may not choose: store it for " +
                      "yourself with kavo settings");
  const auto groups = profile_groups();
  const std::size_t dot = name.find('.');
  if (group.empty() && std::ranges::find(groups, name.substr(0, dot)) != groups.end())
    refuse(place, "\"" + name + "\" is an option of a filter: \"profile\": {\"" + name.substr(0, dot) + "\": {\"" +
                      name.substr(dot + 1) + "\": ...}}");
  if (!group.empty() && !setting->shapes_documents)
    refuse(place, setting->name + " changes nothing in a bilingual document: store it with kavo settings");
  if (!is_value(*setting, value)) refuse(place, setting->name + " can be " + setting->values);
}

std::string ProjectFile::path(const std::string& written) const {
  const std::filesystem::path path(std::u8string(written.begin(), written.end()));
  if (path.is_absolute() || folder_.empty()) return written;
  const std::u8string text = (std::filesystem::path(folder_) / path).lexically_normal().generic_u8string();
  return {text.begin(), text.end()};
}

// The values of the key in the form that its option takes.
std::vector<std::string> ProjectFile::texts(const ProjectKey& key) const {
  const ordered_json& value = json_.value().at(key.key);
  std::vector<std::string> all;
  if (value.is_object())
    for (const auto& [language, code_page] : value.items()) all.push_back(language + "=" + word_of(code_page));
  else if (value.is_array())
    for (const ordered_json& each : value) all.push_back(word_of(each));
  else if (!value.is_boolean() || value.get<bool>())
    all.push_back(value.is_boolean() ? "true" : word_of(value));
  if (key.kind == KeyKind::kPath || key.kind == KeyKind::kPaths)
    for (std::string& each : all) each = path(each);
  if (key.kind != KeyKind::kLanguages) return all;
  std::string list;
  for (const std::string& each : all) (list += list.empty() ? "" : ",") += each;
  return {list};
}

void ProjectFile::complete(CLI::App& app, std::string_view verb) const {
  for (const ProjectKey& key : project_keys()) {
    if (!json_.value().contains(key.key)) continue;
    for (const KeyUse& use : key.uses) {
      CLI::Option* const option = is_for(use, verb) ? app.get_option_no_throw(std::string(use.option)) : nullptr;
      if (option == nullptr || !option->empty()) continue;
      const auto& others = option->get_excludes();
      if (std::ranges::any_of(others, [](const CLI::Option* other) { return !other->empty(); })) continue;
      const std::vector<std::string> values = texts(key);
      if (values.empty()) continue;
      try {
        for (const std::string& value : values) option->add_result(value);
        option->run_callback();
      } catch (const CLI::Error& reason) {
        refuse(pointer_step(key.key), reason.what());
      }
    }
  }
}

ProjectFolders ProjectFile::folders(std::string_view verb) const {
  ProjectFolders folders;
  const auto paths_of = [&](std::string_view key) {
    return json_.value().contains(key) ? texts(key_row(key)) : std::vector<std::string>();
  };
  const bool works_on_sources = is_for(key_row("sources").uses[0], verb);
  for (const std::string& tree : paths_of(works_on_sources ? "sources" : "output"))
    folders.trees.push_back(path_from_host(tree));
  if (!works_on_sources) return folders;
  std::vector<std::string> outputs = paths_of("output");
  for (const std::string& rebuilt : paths_of("rebuilt"))
    for (const std::string& targets : paths_of("target"))
      for (const std::string& language : listed_languages(as_codes(targets)))
        outputs.push_back(for_language(rebuilt, language));
  for (const std::string& output : outputs) folders.outputs.push_back(path_from_host(output));
  return folders;
}

void ProjectFile::store_settings() const {
  const auto store = [&](const std::string& pointer, const std::string& group, const ordered_json& settings) {
    for (const auto& [name, value] : settings.items()) {
      const Setting& setting = *find_setting(group + name);
      try {
        change_setting(setting, as_on_a_command_line(setting, value));
      } catch (const failure& reason) {
        refuse(pointer + pointer_step(name), to_utf8(reason.description()));
      }
    }
  };
  if (json_.value().contains("settings")) store("/settings", "", json_.value()["settings"]);
  if (!json_.value().contains("profile")) return;
  for (const auto& [group, options] : json_.value()["profile"].items())
    store("/profile" + pointer_step(group), group + ".", options);
}

}  // namespace kavo
