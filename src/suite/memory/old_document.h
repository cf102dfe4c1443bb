// A bilingual document before its source was prepared again: everything that an update takes over from it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suite/document/tud_format.h"
#include "suite/memory/text_memory.h"
#include "suite/memory/tmx_file.h"
#include "suite/memory/unit_update.h"

namespace kavo {

struct OldDocument {
  TudHeader header;
  std::vector<OldUnit> units;
  std::uint64_t skeleton_checksum = 0;  // of the file beside it, 0 when there is none
  bool holds_lines =
      false;  // units are lines of a script, as in documents of earlier versions; `units` holds the texts in them
};

// Throws `failure` as read_tud() does, and for a skeleton that cannot be read.
OldDocument read_old_document(std::u16string_view tud);

// True when the document translates between these languages.
bool has_languages_of(const TudHeader& header, std::string_view source_language, std::string_view target_language);

// Adds the translations of the document's units.
void add_translations(TextMemory& memory, const std::vector<OldUnit>& units);

}  // namespace kavo
