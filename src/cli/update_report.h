// Shows the numbers of an update, for one document and for all.
#pragma once

#include "cli/verb.h"
#include "suite/memory/document_update.h"

namespace kavo {

// Adds the numbers to an outcome: as its details "update", and as a message that begins with `heading`.
void add_counts(Outcome& outcome, const UpdateCounts& counts, const std::u16string& heading);
// Reads the numbers from the outcome of another process. 0 for each that is missing.
UpdateCounts counts_of(const nlohmann::ordered_json& update);

}  // namespace kavo
