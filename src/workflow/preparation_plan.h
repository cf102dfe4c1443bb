// The plan for preparing many documents: which source becomes which document, in which languages.
//
// Without an output folder documents are prepared where they are. With one they are copied there first, in the folders
// that they have in the source tree, and the source tree stays as it is.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "workflow/folder_files.h"

namespace kavo {

struct PlannedDocument {
  std::u16string source;
  std::u16string document;  // the source itself, or its copy
};

// Throws `failure` 58 when two sources would become one document or produce files with the same name. The message names
// them, and nothing is written.
std::vector<PlannedDocument> plan_preparation(const std::vector<FolderFile>& sources, std::u16string_view output_folder,
                                              const std::vector<std::u16string>& languages);

// True when all documents of the languages exist and were made from the source as it is now.
bool is_up_to_date(const PlannedDocument& planned, const std::vector<std::u16string>& languages);

// Removes from the plan what is up to date and not outdated by anything else, and returns it. The folders of the
// documents are settled first. The MIF documents of a folder share their hidden texts, so all of them stay in the plan
// when one does.
using IsOutdated = std::function<bool(const PlannedDocument&)>;
std::vector<PlannedDocument> leave_out_up_to_date(std::vector<PlannedDocument>& plan,
                                                  const std::vector<std::u16string>& languages,
                                                  const IsOutdated& is_outdated);

// Copies the source to its place. Throws `failure` 58 when another file is there from which no bilingual document was
// made, unless it may be replaced.
void bring_source(const PlannedDocument& planned, bool may_replace);

}  // namespace kavo
