// The check before MIF documents are prepared: the bilingual documents of their hidden texts belong to all MIF
// documents of a folder.
#pragma once

#include <string>
#include <vector>

namespace kavo {

// Throws `failure` 58, with the advice to use --overwrite, when preparing `document` for the language would replace the
// documents of hidden texts that another MIF document of the folder needs for its way back. `prepared`: the documents
// of this run, which may be prepared anew. Does nothing for a document that is not MIF.
void refuse_others_side_files(const std::u16string& document, const std::u16string& target,
                              const std::vector<std::u16string>& prepared);

}  // namespace kavo
