// Names of files and folders that exist only while the command works. A file that has such a name afterwards was left
// by a run that was killed.
//
//   .kavo-run                     the scratch folder of a run, beside its documents
//   page.htm.kavo-0123456789ab    a file that is written beside its target
//   page.htm.kavo-new             the same in a run, for a target on another volume than the scratch folder
//   kavo-01234567                 a folder in the temporary folder (work_folder_name.h)
//
// Not here: "page.htm.kavo-old" is for people to find (document_names.h), "MOR0A1F.TMP" is a name of the contract
// (clsGetTempFileName), and the settings' own file is written below this room (platform/posix/host.cpp).
#pragma once

#include <string>
#include <string_view>

namespace kavo {

inline constexpr std::u16string_view kScratchFolder = u".kavo-run";

// A different name with each call. The caller must make sure that the file is new.
std::u16string scratch_name_beside(std::u16string_view path);
// From number 1 on.
std::u16string new_name_of(std::u16string_view path, int number);

}  // namespace kavo
