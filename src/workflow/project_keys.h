// What can stand in kavo.json: one row for each key. Reading, `kavo init`, its help and docs/project-file.md go by it.
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

// An option (or "FILE") that a key stands for, of these verbs (with blanks between).
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

// Of two keys for one option the first that is there holds.
std::span<const ProjectKey> project_keys();
// What a value of the key is, for people: "a language, or a list of languages".
std::string_view values_of(KeyKind kind);
// Whether any key means something to a verb.
bool uses_project(std::string_view verb);
bool is_for(const KeyUse& use, std::string_view verb);

}  // namespace kavo
