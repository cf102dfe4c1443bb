// Decides for the units of a document whose source has changed which translation each takes over, and how far it can be
// trusted.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "suite/document/tud_format.h"
#include "suite/memory/text_memory.h"
#include "suite/memory/unit_alignment.h"

namespace kavo {

// A unit of the document as it was. Texts with plain numbers (code_mapping.h).
struct OldUnit {
  std::string source;
  std::string target;
  std::string name;
  std::string element;
  TranslationStatus status = TranslationStatus::kUntranslated;
  bool is_part = false;  // a text from a line of a script, as in documents of earlier versions
  // What else XLIFF says about the unit.
  std::string state;
  std::string state_qualifier;
  bool approved = false;
  std::vector<TudNote> notes;
  std::vector<TudAlternative> alternatives;

  // True when somebody has translated it. A locked unit counts only when its target differs from its source.
  bool is_translated() const;
  bool is_reviewed() const { return status != TranslationStatus::kFuzzy; }
};

// A unit of the document as it is now, untranslated.
struct NewUnit {
  std::string source;  // with its own codes
  std::string plain;   // with plain numbers
  std::string name;
  std::string element;
  bool is_locked = false;
};

// What was translated before, outside the document itself. It is asked only when needed.
class KnownTexts {
 public:
  virtual ~KnownTexts() = default;
  // All documents as they were before this run, the one that is being updated among them.
  virtual TextMemory& documents() = 0;
  // Translations that no document contains any more.
  virtual TextMemory& removed() = 0;
};

enum class UnitFate : std::uint8_t {
  kNew,      // no similar text was translated before
  kKept,     // the same text in the same place
  kMoved,    // the same text elsewhere
  kSimilar,  // a similar text
};

struct UnitDecision {
  UnitFate fate = UnitFate::kNew;
  std::uint32_t old = kNoUnit;  // the old unit in its place, of a kept one
  std::string plain_target;     // what it takes over, with plain numbers; for a kept unit, the old unit's target
  TranslationStatus status = TranslationStatus::kUntranslated;
  std::vector<TudAlternative> alternatives;  // offered with it, with the plain numbers of their own source texts
  std::string_view similar_to{};             // the text whose translation a similar one takes over
};

// A decision for each new unit. An approval stays only where text and place are the same.
std::vector<UnitDecision> decide_update(std::span<const OldUnit> old_units, std::span<const NewUnit> new_units,
                                        TextUnits units, KnownTexts& known);

}  // namespace kavo
