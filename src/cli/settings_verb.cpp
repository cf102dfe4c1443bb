// kavo settings: shows and changes the options that are stored for the user, the ones that dialogs edit.
#include <algorithm>
#include <functional>
#include <utility>

#include "cli/colours.h"
#include "cli/mif_options.h"
#include "cli/verb.h"
#include "common/document_kind.h"
#include "common/nearest.h"
#include "driver/preparation.h"
#include "driver/status_colours.h"
#include "mif/mif_settings.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/components/editor_launcher.h"
#include "suite/filters/filter_options.h"

namespace kavo {
namespace {

// Takes a stored colour away.
constexpr std::string_view kDefault = "default";

// One stored option: its value as text, and how to store a new one. `write` answers false for a value that the option
// cannot have, and throws `failure` when it cannot be stored.
struct Setting {
  std::string name;
  std::string values;  // what it can be, for the help and for errors
  std::function<std::string()> read;
  std::function<bool(const std::string& value)> write;
};

std::string mif_split() { return split_option_name(load_mif_settings().split); }
bool set_mif_split(const std::string& value) {
  const auto found = split_option_names().find(value);
  if (found == split_option_names().end()) return false;
  store_mif_split(found->second);
  return true;
}

std::string mif_markers() { return marker_names_of(load_mif_settings().markers); }
bool set_mif_markers(const std::string& value) {
  store_mif_markers(marker_list_of(value));
  return true;
}

Setting switch_setting(std::string name, const std::string& what_for, bool (*read)(), void (*write)(bool)) {
  return {std::move(name), "on or off" + what_for, [read] { return read() ? "on" : "off"; },
          [write](const std::string& value) {
            if (value != "on" && value != "off") return false;
            write(value == "on");
            return true;
          }};
}

// One that can be any text.
Setting text_setting(std::string name, std::string values, std::u16string (*read)(),
                     void (*write)(std::u16string_view)) {
  return {std::move(name), std::move(values), [read] { return to_utf8(read()); },
          [write](const std::string& value) {
            write(to_utf16(value));
            return true;
          }};
}

template <std::size_t Status>
std::string status_colour() {
  return colour_text(stored_status_colours(kUsualStatusColours)[Status]);
}
template <std::size_t Status>
bool set_status_colour(const std::string& value) {
  const std::optional<std::int32_t> colour = colour_of(value);
  if (!colour && value != kDefault) return false;
  store_status_colour(Status, colour);
  return true;
}

constexpr const char* kColour =
    "a colour by its name (red, blue, green, orange ...), #RRGGBB, or default: for rebuild --highlight";

// The lasting options of the filters.
Setting setting_of(const FilterOption& option) {
  const std::string key(option.key);
  return {key, values_of(option) + ", or default",
          [key] { return std::string(option_text(stored_filter_options(), key)); },
          [key](const std::string& value) {
            const bool is_default = value == kDefault;
            if (!is_default && !option_problem(key, value).empty()) return false;
            store_filter_option(key, is_default ? "" : value);
            return true;
          }};
}

std::vector<Setting> all_settings() {
  std::vector<Setting> settings{
      {"mif.split", "none, semicolon or both", mif_split, set_mif_split},
      switch_setting(
          "mif.objects", "", [] { return load_mif_settings().objects; }, store_mif_objects),
      {"mif.markers", "marker types with commas between", mif_markers, set_mif_markers},
      text_setting("editor.command", "the editor's command line, %1 for the document and %2 for the memory",
                   editor_command, editor_command),
      switch_setting("pages.repair", ": whether prepare mends the tags of pages", repairs_pages, store_repairs_pages),
      text_setting("pages.extensions", "extensions of further server pages, with blanks between", added_page_extensions,
                   store_page_extensions),
      text_setting("pages.fragments", "extensions of further parts of pages, with blanks between",
                   added_fragment_extensions, store_fragment_extensions),
      {"highlight.untranslated", kColour, status_colour<0>, set_status_colour<0>},
      {"highlight.fuzzy", kColour, status_colour<1>, set_status_colour<1>},
      {"highlight.match", kColour, status_colour<2>, set_status_colour<2>},
      {"highlight.translated", kColour, status_colour<3>, set_status_colour<3>},
  };
  for (const FilterOption& option : filter_options())
    if (is_lasting(option)) settings.push_back(setting_of(option));
  return settings;
}

const std::vector<Setting>& known_settings() {
  static const std::vector<Setting> settings = all_settings();
  return settings;
}

const Setting& setting_named(std::string_view name) {
  const auto found = std::ranges::find(known_settings(), name, &Setting::name);
  if (found != known_settings().end()) return *found;
  std::vector<std::string_view> names;
  for (const Setting& setting : known_settings()) names.push_back(setting.name);
  throw CLI::ValidationError(std::string(name),
                             "is no setting; the nearest is " + std::string(nearest(name, std::move(names)).front()));
}

class Settings final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    std::string help = "Settings to show, or to change with =VALUE (none: all are shown):";
    for (const Setting& setting : known_settings()) (((help += "\n  ") += setting.name) += ": ") += setting.values;
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
      if (text.size() != name_in(text).size()) change(setting, text.substr(name_in(text).size() + 1));
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

  static void change(const Setting& setting, const std::string& value) {
    if (!setting.write(value))
      throw failure(FailureNumber::kInvalidCall, to_utf16(setting.name + " can be " + setting.values));
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
