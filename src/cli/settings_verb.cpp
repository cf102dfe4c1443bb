// kavo settings: shows and changes the options that are stored for the user, the ones that dialogs edit.
#include <algorithm>

#include "cli/mif_options.h"
#include "cli/verb.h"
#include "mif/clsMIFUtilities.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/editor_launcher.h"

namespace kavo {
namespace {

// One stored option: its value as text, and how to store a new one. `write` answers false for a value that the option
// cannot have.
struct Setting {
  std::string_view name;
  std::string_view values;  // what it can be, for the help and for errors
  std::string (*read)();
  bool (*write)(const std::string& value);
};

// The converter loads the options when it is made and saves them when it is destroyed.
template <class Read>
auto read_mif(Read read) {
  clsMIFUtilities utilities;
  utilities.options_are_temporary();
  return read(utilities);
}

std::string mif_split() {
  return read_mif([](const clsMIFUtilities& mif) { return split_option_name(mif.SplitOptions()); });
}
bool set_mif_split(const std::string& value) {
  const auto found = split_option_names().find(value);
  if (found == split_option_names().end()) return false;
  clsMIFUtilities().SplitOptions(found->second);
  return true;
}

std::string mif_objects() {
  return read_mif([](const clsMIFUtilities& mif) { return mif.ProcessObjects() ? "on" : "off"; });
}
bool set_mif_objects(const std::string& value) {
  if (value != "on" && value != "off") return false;
  clsMIFUtilities().ProcessObjects(value == "on");
  return true;
}

std::string mif_markers() {
  return read_mif([](const clsMIFUtilities& mif) { return marker_names_of(mif.Markers()); });
}
bool set_mif_markers(const std::string& value) {
  clsMIFUtilities().Markers(marker_list_of(value));
  return true;
}

std::string read_editor_command() { return to_utf8(editor_command()); }
bool set_editor_command(const std::string& value) {
  editor_command(to_utf16(value));
  return true;
}

constexpr Setting kSettings[] = {
    {"mif.split", "none, semicolon or both", mif_split, set_mif_split},
    {"mif.objects", "on or off", mif_objects, set_mif_objects},
    {"mif.markers", "marker types with commas between", mif_markers, set_mif_markers},
    {"editor.command", "the editor's command line, %1 for the document and %2 for the memory", read_editor_command,
     set_editor_command},
};

const Setting& setting_of(std::string_view name) {
  const auto* found = std::ranges::find(kSettings, name, &Setting::name);
  if (found == std::end(kSettings)) throw CLI::ValidationError(std::string(name), "is no setting");
  return *found;
}

class Settings final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    std::string help = "Settings to show, or to change with =VALUE (none: all are shown):";
    for (const Setting& setting : kSettings) (((help += "\n  ") += setting.name) += ": ") += setting.values;
    app.add_option("NAME", wanted_, help)->type_name("");
  }
  void check_usage(std::size_t) override {
    for (const std::string& text : wanted_) setting_of(name_in(text));
  }
  Outcome run(const std::u16string&, const ProgressEvent::Handler&) override {
    Outcome outcome;
    outcome.details["settings"] = nlohmann::ordered_json::object();
    if (wanted_.empty())
      for (const Setting& setting : kSettings) show(setting, outcome);
    for (const std::string& text : wanted_) {
      const Setting& setting = setting_of(name_in(text));
      if (text.size() != name_in(text).size()) change(setting, text.substr(name_in(text).size() + 1));
      show(setting, outcome);
    }
    return outcome;
  }

 private:
  static std::string_view name_in(std::string_view text) { return text.substr(0, text.find('=')); }

  static void show(const Setting& setting, Outcome& outcome) {
    const std::string value = setting.read();
    outcome.lines.push_back(std::string(setting.name) + "=" + value);
    outcome.details["settings"][std::string(setting.name)] = value;
  }

  // A converter drops a failure to save, so what was stored is read back.
  static void change(const Setting& setting, const std::string& value) {
    const std::string name(setting.name);
    if (!setting.write(value))
      throw failure(FailureNumber::kInvalidCall, to_utf16(name + " can be " + std::string(setting.values)));
    const std::string stored = setting.read();
    if (stored != value && marker_list_of(stored) != marker_list_of(value))
      throw failure(FailureNumber::kPathFileAccess, to_utf16(name + " could not be stored"));
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
