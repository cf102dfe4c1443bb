#include "workflow/project_keys.h"

#include <algorithm>

namespace kavo {
namespace {

using enum KeyKind;

constexpr std::string_view kDocumentVerbs = "rebuild export pseudo stats";

constexpr ProjectKey kKeys[] = {
    {"version", kVersion, {}, "The version of this file's format. This key is required", "1"},
    {"source", kLanguage, {{{"prepare verify", "--source"}}}, "The language of the sources", "\"EN-US\""},
    {"target",
     kLanguages,
     {{{"prepare rebuild", "--target"}}},
     "The languages to translate into",
     "[\"FR\", \"DE\", \"JA\"]"},
    {"code-page",
     kCodePage,
     {{{"prepare verify rebuild", "--code-page"}}},
     "The code page of the sources (default: the system's)",
     "1252"},
    {"target-code-page",
     kCodePages,
     {{{"prepare", "--target-code-page"}}},
     "The code page of the translated documents, one for all languages or one for each (default: that of the source)",
     "{\"JA\": 932}"},
    {"output",
     kPath,
     {{{"prepare", "--output-dir"}, {kDocumentVerbs, "FILE"}, {"import", "--to"}}},
     "The folder of the bilingual documents (default: beside the sources)",
     "\"work\""},
    {"rebuilt",
     kPath,
     {{{"rebuild", "--output-dir"}}},
     "The folder of the translated documents; `{lang}` in it becomes the language",
     "\"site-{lang}\""},
    {"copy-rest",
     kPaths,
     {{{"rebuild", "--copy-rest"}}},
     "The folders whose other files (pictures, styles) are copied to `rebuilt`",
     "[\"site\"]"},
    {"sources",
     kPaths,
     {{{"prepare verify", "FILE"}, {kDocumentVerbs, "FILE"}}},
     "The folders and files to translate",
     "[\"site\", \"manuals\"]"},
    {"recursive",
     kSwitch,
     {{{"prepare verify rebuild export pseudo stats", "--recursive"}}},
     "Whether sub-folders are included",
     "true"},
    {"include",
     kTexts,
     {{{"prepare verify", "--include"}}},
     "Patterns: in the folders, only what one of them selects, see [projects.md](projects.md)",
     "[\"*.asp\", \"shop/**/*.htm\"]"},
    {"exclude",
     kTexts,
     {{{"prepare verify", "--exclude"}}},
     "Patterns: nothing that one of them selects",
     "[\"drafts\"]"},
    {"settings",
     kSettings,
     {},
     "Settings of `kavo settings` that do not belong to a filter",
     "{\"pages.extensions\": \"shtml\", \"pages.repair\": false}"},
    {"profile",
     kProfile,
     {},
     "What the filters take out of the documents: the options of each filter, see "
     "[filter-options.md](filter-options.md) and `kavo settings --help`",
     "{\"html\": {\"text-attributes\": [\"data-title\"]}, \"mif\": {\"markers\": [\"Index\"]}}"},
};

}  // namespace

std::span<const ProjectKey> project_keys() { return kKeys; }

std::string_view values_of(KeyKind kind) {
  switch (kind) {
    case kVersion:
      return "the number 1";
    case kPath:
      return "a path";
    case kPaths:
      return "a path, or a list of paths";
    case kTexts:
      return "a text, or a list of texts";
    case kLanguage:
      return "a language";
    case kLanguages:
      return "a language, or a list of languages";
    case kCodePage:
      return "a number or a name";
    case kCodePages:
      return "a number or a name, or an object with one for each language";
    case kSwitch:
      return "true or false";
    case kSettings:
      return "an object of settings";
    case kProfile:
      return "an object with an object for each filter";
  }
  return {};
}

bool is_for(const KeyUse& use, std::string_view verb) {
  for (std::string_view verbs = use.verbs; !verbs.empty();) {
    const std::size_t end = std::min(verbs.find(' '), verbs.size());
    if (verbs.substr(0, end) == verb) return true;
    verbs.remove_prefix(std::min(end + 1, verbs.size()));
  }
  return false;
}

bool uses_project(std::string_view verb) {
  return std::ranges::any_of(kKeys, [&](const ProjectKey& key) {
    return std::ranges::any_of(key.uses, [&](const KeyUse& use) { return is_for(use, verb); });
  });
}

}  // namespace kavo
