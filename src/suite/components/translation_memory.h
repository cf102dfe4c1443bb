// K19Suite.TranslationMemory: which memory file (TMX) a user wants to work with. What a memory holds is the editor's
// business.
#pragma once

#include "platform/automation.h"

namespace kavo {

// Members: CreateNew and OpenExisting, as docs/suite-interface.md describes them.
class TranslationMemory final : public TableObject {
 public:
  TranslationMemory();
};

}  // namespace kavo
