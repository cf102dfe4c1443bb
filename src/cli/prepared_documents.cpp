#include "cli/prepared_documents.h"

#include "common/document_names.h"

namespace kavo {

std::vector<std::u16string> documents_among(const std::vector<std::u16string>& files) {
  std::vector<std::u16string> documents = files;
  std::erase_if(documents, is_mif_side_file);
  return documents;
}

std::optional<Outcome> outcome_of_side_file(const std::u16string& file) {
  if (!is_mif_side_file(file)) return std::nullopt;
  Outcome outcome;
  outcome.messages.push_back({u"left out, because it holds hidden texts of the MIF documents beside it"});
  return outcome;
}

}  // namespace kavo
