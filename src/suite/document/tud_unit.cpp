// Reads a unit of a bilingual document: its translation, and how far it is.
#include <algorithm>

#include "suite/document/tud_format.h"

namespace kavo {
namespace {

bool starts_with_any(std::string_view text, std::initializer_list<std::string_view> starts) {
  return std::any_of(starts.begin(), starts.end(), [&](std::string_view start) { return text.starts_with(start); });
}

}  // namespace

std::string_view translation_of(const TudUnit& unit) {
  const bool is_missing = !unit.has_target || (unit.target.empty() && !unit.approved);
  return is_missing ? unit.source : unit.target;
}

bool is_own_note(const TudNote& note) {
  return note.attributes.find(" from=\"" + std::string(kToolId) + '"') != std::string::npos;
}

bool is_new_state(std::string_view state) { return starts_with_any(state, {"new", "needs-translation"}); }

TranslationStatus status_of(const TudUnit& unit) {
  if (!unit.translate) return TranslationStatus::kLocked;
  const bool is_same = !unit.has_target || unit.target == unit.source;
  const bool is_new = is_new_state(unit.state);
  // Some tools fill a target and do not change its state. An empty target of a source text does not count as a
  // translation.
  if (is_same && (is_new || unit.state.empty()) && !unit.approved) return TranslationStatus::kUntranslated;
  if (unit.target.empty() && !unit.source.empty() && !unit.approved) return TranslationStatus::kUntranslated;
  if (unit.approved || unit.state == "signed-off") return TranslationStatus::kApproved;
  if (unit.state_qualifier == "fuzzy-match" || (!is_new && unit.state.starts_with("needs-")))
    return TranslationStatus::kFuzzy;
  if (starts_with_any(unit.state_qualifier, {"exact-match", "id-match", "leveraged-"}))
    return TranslationStatus::kExact;
  return TranslationStatus::kTranslated;
}

}  // namespace kavo
