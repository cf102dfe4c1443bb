// Decides which of the files on a command line are documents to prepare.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/verb.h"

namespace kavo {

// The files without the side files of MIF documents. "*.mif" names these, too, once the documents are prepared.
std::vector<std::u16string> documents_among(const std::vector<std::u16string>& files);
// The outcome for a side file, which is left out with a message. Nothing for a document.
std::optional<Outcome> outcome_of_side_file(const std::u16string& file);

}  // namespace kavo
