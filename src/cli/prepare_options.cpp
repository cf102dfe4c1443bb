#include "cli/prepare_options.h"

#include <map>
#include <sstream>

#include "cli/option_values.h"
#include "cli/setting_table.h"
#include "platform/fnv_hash.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/filters/filter_options.h"
#include "workflow/manifest.h"

namespace kavo {
namespace {

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::stringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

void PrepareOptions::add_to(CLI::App& app) {
  app.add_option("--source", source, "Language of the documents, such as EN-US or en-US")
      ->required()
      ->type_name("CODE")
      ->transform(language_value());
  app.add_option("--target", target, "Languages to translate them into, such as FR, DE-AT or zh-Hant-TW: FR,DE")
      ->required()
      ->type_name("CODE,...")
      ->transform(language_list_value());
  folders.add_to(app);
  app.add_option("--output-dir", output_folder,
                 "Prepare copies in this folder, in the same sub-folders as the documents")
      ->type_name("FOLDER");
  app.add_option("--target-code-page", target_code_pages_,
                 "Code page of the rebuilt documents (default: that of the source); JA=932 for one language")
      ->type_name("N")
      ->allow_extra_args(false)
      ->transform(language_code_page_value());
  app.add_option("--scripts", scripts_,
                 "Texts of scripts to offer: likely (doubtful ones locked), all (doubtful ones, too) or none")
      ->type_name("WHICH")
      ->check(CLI::IsMember({"likely", "all", "none"}));
  app.add_flag("--fresh", fresh, "Start from scratch: take nothing over from existing bilingual documents");
  app.add_option("--paragraphs", paragraphs_,
                 "What counts as one text in a text file: a line (lines), the lines between empty lines (blank), or "
                 "whatever its lines look like (auto)")
      ->type_name("WHICH")
      ->check(CLI::IsMember({"lines", "blank", "auto"}));
  app.add_flag("--overwrite", overwrite,
               "Replace files in the way that were not made from this document, and the texts that a resource script "
               "already has in the target language");
  app.add_flag("--no-repair", no_repair, "Do not repair the tags of pages");
  app.add_option("--filter-option", filter_options_,
                 "An option of a filter, such as rc.dialog-font=\"MS UI Gothic\" (docs/filter-options.md lists all)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->check(filter_option_value());
}

std::vector<std::u16string> PrepareOptions::targets() const {
  std::vector<std::u16string> targets;
  for (const std::string& language : listed_languages(target)) targets.push_back(to_utf16(language));
  return targets;
}

std::u16string PrepareOptions::filter_options() const {
  FilterOptions options;
  for (const std::string& option : filter_options_) {
    const std::size_t equals = option.find('=');
    choose(options, option.substr(0, equals), option.substr(equals + 1));
  }
  if (overwrite) options["overwrite"] = "on";
  if (!scripts_.empty()) options["scripts.offer"] = scripts_;
  if (!paragraphs_.empty()) options["text.paragraphs"] = paragraphs_;
  std::u16string lines;
  for (const auto& [key, value] : options) lines += formatted(u"{}={}\n", key, value);
  return lines;
}

std::int32_t PrepareOptions::target_code_page(const std::u16string& language) const {
  std::string chosen;
  for (const std::string& each : target_code_pages_) {
    const std::size_t equals = each.find('=');
    if (equals == std::string::npos && chosen.empty()) chosen = each;
    if (equals != std::string::npos && to_utf16(each.substr(0, equals)) == language) chosen = each.substr(equals + 1);
  }
  return chosen.empty() ? 0 : static_cast<std::int32_t>(code_page_number(chosen));
}

std::string PrepareOptions::checksum(const std::u16string& language) const {
  std::map<std::string, std::string> all;
  for (const Setting& setting : known_settings())
    if (setting.shapes_documents) all[setting.name] = setting.read();
  for (const std::string& option : lines_of(to_utf8(filter_options()))) {
    const std::size_t equals = option.find('=');
    all[option.substr(0, equals)] = option.substr(equals + 1);
  }
  all.erase("overwrite");  // says what may be replaced
  if (no_repair) all["pages.repair"] = "off";
  all["source"] = source;
  all["code-page"] = std::to_string(ports().code_page->number());
  all["target-code-page"] = std::to_string(target_code_page(language));
  std::uint64_t hash = kFnvSeed;
  for (const auto& [name, value] : all) {
    hash = fnv_add(fnv_add(hash, name), "=");
    hash = fnv_add(fnv_add(hash, value), "\n");
  }
  return checksum_text(hash);
}

}  // namespace kavo
