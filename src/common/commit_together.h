// Several new files that take their final names together: all of them or none.
//
// Each but the last steps over its old file by first moving that aside, so that it can be put back when a later one
// fails; the last replaces its old file in one step. A program that is killed between two renames leaves the old files
// whole under their set-aside names ("<name>.kavo-old").
#pragma once

#include <initializer_list>

#include "common/pending_file.h"

namespace kavo {

// Completes the files and gives them their final names in the order listed. Throws `failure`; the final names then
// hold what they held before and no temporary file is left.
void commit_together(std::initializer_list<PendingFile*> files);

}  // namespace kavo
