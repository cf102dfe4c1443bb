// The numbers of an update, as the command shows them: of one document, and of all.
#pragma once

#include "cli/verb.h"
#include "suite/memory/document_update.h"

namespace kavo {

// Adds the numbers to an outcome: as its details "update", and as a message behind `heading`.
void add_counts(Outcome& outcome, const UpdateCounts& counts, const std::u16string& heading);
// Reads the numbers of another process's outcome again. 0 for each that is missing.
UpdateCounts counts_of(const nlohmann::ordered_json& update);

}  // namespace kavo
