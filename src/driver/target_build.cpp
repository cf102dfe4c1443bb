#include "driver/target_build.h"

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/same_file.h"
#include "driver/document_files.h"
#include "driver/filter_table.h"
#include "driver/step_failures.h"
#include "driver/tud_name.h"
#include "platform/case_fold.h"
#include "platform/failure.h"

namespace kavo {
namespace {

// If the run cannot note a file, the step counts as refused.
template <class Action>
void or_refuse(Action&& action) {
  try {
    action();
  } catch (const failure& reason) {
    throw refusal(reason.description());
  }
}

}  // namespace

TargetBuild::TargetBuild(std::u16string_view tud, FolderRun& run)
    : tud_(tud), open_tag_(open_tag_name_of(tud)), run_(run) {}

TargetBuild::~TargetBuild() {
  if (!skeleton_.path.empty() && !skeleton_.keep) clsCommon().DeleteFile(skeleton_.path);
}

void TargetBuild::open() {
  refuse_open_tag_name(tud_);
  document_.open(tud_);
}

void TargetBuild::read_details() {
  details_ = document_.merge_details();
  refuse_open_tag_name(details_.skeleton_name);
}

void TargetBuild::save_open_tag(const std::optional<StatusColours>& colours) {
  or_refuse([&] { run_.borrow(open_tag_); });
  document_.save_open_tag(open_tag_, colours);
}

void TargetBuild::locate_skeleton() {
  skeleton_ = document_.locate_skeleton();
  if (!skeleton_.keep) or_refuse([&] { run_.note_temporary_file(skeleton_.path); });
}

// Compares names without their folders, since a document may name its skeleton with or without one.
void TargetBuild::refuse_open_tag_name(std::u16string_view file) const {
  if (equal_ignoring_case(file_name_of(file), file_name_of(open_tag_)))
    throw refusal(u"The OpenTag file " + open_tag_ + u" would replace a file that it is made from");
}

void TargetBuild::refuse_own_file(const std::u16string& target) const {
  for (const std::u16string& own : {tud_, open_tag_, skeleton_.path})
    if (!own.empty() && is_same_file(target, own))
      throw failure(FailureNumber::kInvalidCall, u"The target must be another file than " + own);
}

void TargetBuild::create_target(const std::u16string& target, const std::u16string& language) const {
  Argument arguments[] = {by_value(target), by_value(open_tag_), by_value(skeleton_.path), by_value(language),
                          by_value(details_.filter_identifier)};
  filter_catalogue().invoke(u"CreateTarget", arguments);
  if (!is_file(target)) throw failure(FailureNumber::kFileNotFound, u"The filter has not created " + target);
}

}  // namespace kavo
