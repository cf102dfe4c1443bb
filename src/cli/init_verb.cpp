// kavo init: a project file for the current folder.
#include <map>

#include "cli/project_file.h"
#include "cli/verb.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "workflow/project_keys.h"

namespace kavo {
namespace {

using nlohmann::ordered_json;

bool is_list(KeyKind kind) { return kind == KeyKind::kPaths || kind == KeyKind::kTexts || kind == KeyKind::kLanguages; }

// The JSON value for an option's text.
ordered_json json_of(KeyKind kind, const std::string& text) {
  const bool is_number = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos && text.size() < 9;
  if (is_number && (kind == KeyKind::kCodePage || kind == KeyKind::kCodePages)) return std::stoul(text);
  if (kind == KeyKind::kSwitch && (text == "true" || text == "false")) return text == "true";
  return text;
}

// One option for each key: --target FR,DE --exclude drafts --output work.
class Init final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app_ = &app;
    for (const ProjectKey& key : project_keys()) {
      if (key.kind == KeyKind::kVersion || key.kind == KeyKind::kSettings || key.kind == KeyKind::kProfile) continue;
      if (key.kind == KeyKind::kCodePage) continue;  // an option of all verbs
      app.add_option("--" + std::string(key.key), given_[std::string(key.key)], std::string(key.summary))
          ->type_name("VALUE")
          ->delimiter(is_list(key.kind) || key.kind == KeyKind::kCodePages ? ',' : '\0')
          ->allow_extra_args(false);
    }
  }
  std::u16string workplace(const std::u16string&) const override { return path(); }
  Outcome run(const std::u16string&, const ProgressEvent::Handler&) override {
    if (ports().files->info(path()))
      throw failure(FailureNumber::kFileAlreadyExists,
                    to_utf16(kProjectFile) + u" exists already; change it in an editor");
    ordered_json project = {{"version", kProjectVersion}};
    for (const ProjectKey& key : project_keys()) {
      const auto values = given_.find(std::string(key.key));
      if (values != given_.end() && !values->second.empty())
        project[std::string(key.key)] = value_of(key.kind, values->second);
    }
    if (const auto code_page = app_->get_option("--code-page")->results(); !code_page.empty())
      project["code-page"] = json_of(KeyKind::kCodePage, code_page.back());
    if (!project.contains("sources")) project["sources"] = {"."};
    if (!project.contains("recursive")) project["recursive"] = true;
    const std::string text = project.dump(2) + "\n";
    const ProjectFile checked(text, "");  // refuses now what would be refused when the file is read
    PendingFile file(path());
    file.write(text);
    file.commit();
    Outcome outcome;
    outcome.lines.push_back(std::string(kProjectFile));
    outcome.details["project"] = project;
    return outcome;
  }

 private:
  static std::u16string path() { return ports().files->absolute(to_utf16(kProjectFile)); }

  static ordered_json value_of(KeyKind kind, const std::vector<std::string>& texts) {
    if (kind == KeyKind::kCodePages && texts.front().find('=') != std::string::npos) {
      ordered_json pages = ordered_json::object();
      for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        pages[text.substr(0, equals)] = json_of(kind, equals == std::string::npos ? "" : text.substr(equals + 1));
      }
      return pages;
    }
    if (!is_list(kind)) return json_of(kind, texts.back());
    ordered_json list = ordered_json::array();
    for (const std::string& text : texts) list.push_back(json_of(kind, text));
    return list;
  }

  const CLI::App* app_ = nullptr;
  std::map<std::string, std::vector<std::string>> given_;  // by key
};

constexpr VerbEntry kVerbs[] = {
    {"", "init", "Write a project file (kavo.json), so that kavo prepare and kavo rebuild need no options",
     "kavo init --sources site --source EN-US --target FR,DE,JA --output work --rebuilt 'site-{lang}'", make_verb<Init>,
     false},
};

}  // namespace

std::span<const VerbEntry> init_verbs() { return kVerbs; }

}  // namespace kavo
