// The keys of kavo.json, one row each. Reading, `kavo init`, its help and docs/project-file.md all use this table.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kavo {

inline constexpr std::string_view kProjectFile = "kavo.json";
inline constexpr int kProjectVersion = 1;

enum class KeyKind : std::uint8_t {
  kVersion,
  kPath,       // from the folder of the file, in the host's form
  kPaths,      // one, or a list
  kTexts,      // one, or a list
  kLanguage,   // a code or tag
  kLanguages,  // one, or a list
  kCodePage,   // a number or a name
  kCodePages,  // the same, or an object: one for each language
  kSwitch,
  kSettings,  // an object: the stored options by their names
  kProfile,   // an object: for each filter an object of its options
};

// An option (or "FILE") that a key stands for, and the verbs for which it does (separated by blanks).
struct KeyUse {
  std::string_view verbs;
  std::string_view option;
};

struct ProjectKey {
  std::string_view key;
  KeyKind kind;
  std::array<KeyUse, 3> uses;
  std::string_view summary;
  std::string_view example;  // JSON
};

// If two keys stand for one option, the first that the file has counts.
std::span<const ProjectKey> project_keys();
// What a value of the key is, for people: "a language, or a list of languages".
std::string_view values_of(KeyKind kind);
// True when any key has a meaning for a verb.
bool uses_project(std::string_view verb);
bool is_for(const KeyUse& use, std::string_view verb);

}  // namespace kavo
