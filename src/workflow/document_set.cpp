#include "workflow/document_set.h"

#include <algorithm>

#include "common/document_names.h"
#include "common/path_parts.h"
#include "common/same_file.h"
#include "driver/companions.h"
#include "driver/document_files.h"
#include "driver/tud_name.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/document/skeleton.h"
#include "suite/document/tud_format.h"

namespace kavo {
namespace {

// Names all of them, whether they exist or not.
std::vector<std::u16string> companion_names(const std::u16string& tud) {
  const TudName name(tud);
  if (name.is_taken_along()) return {};
  std::vector<std::u16string> companions = companions_of(name);
  // The source of an Office document is a companion, too, but not a bilingual document.
  std::erase_if(companions, [](const std::u16string& file) { return !ascii_lower(file).ends_with(u".tud"); });
  return companions;
}

// The files from which a document says it was made.
std::vector<std::u16string> files_of(const std::u16string& tud) {
  std::vector<std::u16string> files{tud, skeleton_name_of(tud)};
  if (!is_file(tud)) return files;
  const TudHeader header = header_of(tud);
  const std::u16string folder = folder_of(tud);
  for (const std::string& name : {header.original, header.skeleton, header.set.author_document})
    if (!name.empty()) files.push_back(folder + core_file_name(name));
  return files;
}

}  // namespace

std::vector<std::u16string> companion_documents(const std::u16string& tud) {
  std::vector<std::u16string> companions = companion_names(tud);
  for (const std::u16string& companion : companions)
    if (!is_file(companion))
      throw failure(FailureNumber::kFileNotFound,
                    to_utf16(path_to_host(companion) + " is missing, which belongs to " + path_to_host(tud)));
  return companions;
}

std::u16string object_file_beside(const std::u16string& tud) {
  const std::u16string objects = TudName(tud).file_name(1, u"obj", false);
  return is_file(objects) ? objects : u"";
}

void refuse_file_of_set(const std::u16string& target, const std::u16string& tud) {
  const auto refuse = [&](const std::u16string& file) {
    throw failure(FailureNumber::kInvalidCall, to_utf16("The file to write must not be " + path_to_host(file)));
  };
  std::vector<std::u16string> documents{tud};
  std::ranges::copy(companion_names(tud), std::back_inserter(documents));
  for (const std::u16string& document : documents)
    for (const std::u16string& file : files_of(document))
      if (is_same_file(target, file)) refuse(file);
  // The document's name says more, because documents of older versions do not name their source.
  const TudName name(tud);
  for (const std::u16string& file : {object_file_beside(tud), name.file_name(0, name.part(1), false)})
    if (!file.empty() && is_same_file(target, file)) refuse(file);
  if (is_file(target) && is_skeleton(target)) refuse(target);
}

}  // namespace kavo
