// K19Suite.TranslationMemory: lets the user choose a memory file (TMX). The editor deals with its contents.
#pragma once

#include "platform/automation.h"

namespace kavo {

// Members: CreateNew and OpenExisting, as docs/suite-interface.md describes them.
class TranslationMemory final : public TableObject {
 public:
  TranslationMemory();
};

}  // namespace kavo
