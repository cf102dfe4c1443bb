// kavo settings: shows and changes the options that are stored for the user, the ones that dialogs edit.
#include "cli/setting_table.h"
#include "cli/verb.h"

namespace kavo {
namespace {

const Setting& setting_named(std::string_view name) {
  if (const Setting* const setting = find_setting(name)) return *setting;
  throw CLI::ValidationError(std::string(name), "is not a setting; the nearest is " + nearest_setting(name));
}

class Settings final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    std::string help = "Settings to show, or to change with =VALUE (none: all are shown):";
    for (const Setting& setting : known_settings()) help += "\n  " + setting.name + ": " + setting.values;
    app.add_option("NAME", wanted_, help)->type_name("");
  }
  void check_usage(std::size_t) override {
    for (const std::string& text : wanted_) setting_named(name_in(text));
  }
  Outcome run(const std::u16string&, const ProgressEvent::Handler&) override {
    Outcome outcome;
    outcome.details["settings"] = nlohmann::ordered_json::object();
    if (wanted_.empty())
      for (const Setting& setting : known_settings()) show(setting, outcome);
    for (const std::string& text : wanted_) {
      const Setting& setting = setting_named(name_in(text));
      if (text.size() != name_in(text).size()) change_setting(setting, text.substr(name_in(text).size() + 1));
      show(setting, outcome);
    }
    return outcome;
  }

 private:
  static std::string_view name_in(std::string_view text) { return text.substr(0, text.find('=')); }

  static void show(const Setting& setting, Outcome& outcome) {
    const std::string value = setting.read();
    outcome.lines.push_back(setting.name + "=" + value);
    outcome.details["settings"][setting.name] = value;
  }

  std::vector<std::string> wanted_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "settings", "Show and change the stored options",
     "kavo settings mif.split=semicolon mif.markers=Index,Heading", make_verb<Settings>, false},
};

}  // namespace

std::span<const VerbEntry> settings_verbs() { return kVerbs; }

}  // namespace kavo
