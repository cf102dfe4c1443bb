// What becomes of the units of a document whose source has changed: which translation each takes over, and how far it
// may be trusted.
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
  bool is_part = false;  // of a line of a script, as documents of earlier versions hold them
  // What XLIFF says beside that.
  std::string state;
  std::string state_qualifier;
  bool approved = false;
  std::vector<TudNote> notes;
  std::vector<TudAlternative> alternatives;

  // Whether somebody translated it; a locked unit only when its target is another text.
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

// What was translated before, beside the document itself. Asked only when it is needed.
class KnownTexts {
 public:
  virtual ~KnownTexts() = default;
  // All documents as they were before this run, the one that is being updated among them.
  virtual TextMemory& documents() = 0;
  // What no document holds any more.
  virtual TextMemory& removed() = 0;
};

enum class UnitFate : std::uint8_t {
  kNew,      // nothing like it was translated before
  kKept,     // the same text in the same place
  kMoved,    // the same text elsewhere
  kSimilar,  // a similar text
};

struct UnitDecision {
  UnitFate fate = UnitFate::kNew;
  std::uint32_t old = kNoUnit;  // the old unit in its place, of a kept one
  std::string plain_target;     // what it takes over, with plain numbers; of a kept one that of the old unit
  TranslationStatus status = TranslationStatus::kUntranslated;
  std::vector<TudAlternative> alternatives;  // to be offered with it, with plain numbers of their own source texts
  std::string_view similar_to{};             // the text whose translation a similar one takes over
};

// A decision for each new unit. An approval stays only where text and place are the same.
std::vector<UnitDecision> decide_update(std::span<const OldUnit> old_units, std::span<const NewUnit> new_units,
                                        TextUnits units, KnownTexts& known);

}  // namespace kavo
