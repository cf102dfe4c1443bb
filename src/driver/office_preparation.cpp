#include "driver/office_preparation.h"

#include <utility>

#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "interchange/office_interchange.h"

namespace kavo {
namespace {

// A scratch path for the copy of a document, in a folder where the name of its translated form is also free.
std::u16string scratch_copy(const std::u16string& document, FolderRun& run) {
  const std::u16string name = file_name_of(document);
  std::u16string copy = run.scratch_path(name);
  std::u16string form = run.scratch_path(translated_form_of(name));
  // Scratch folders are numbered, and each call returns a path in the first one where the name is free.
  while (translated_form_of(copy) != form) {
    const auto number = [](const std::u16string& path) { return std::pair(folder_of(path).size(), folder_of(path)); };
    if (number(copy) < number(form))
      copy = run.scratch_path(name);
    else
      form = run.scratch_path(translated_form_of(name));
  }
  return copy;
}

}  // namespace

std::u16string in_translated_form(const std::u16string& document, FolderRun& run) {
  if (translated_form_of(document).empty()) return document;
  const std::u16string copy = scratch_copy(document, run);
  copy_file(document, copy);
  office_interchange().write_form(copy);
  return translated_form_of(copy);
}

}  // namespace kavo
