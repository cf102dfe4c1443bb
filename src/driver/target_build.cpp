#include "driver/target_build.h"

#include <utility>

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/same_file.h"
#include "driver/document_files.h"
#include "driver/filter_table.h"
#include "driver/tud_name.h"
#include "platform/case_fold.h"
#include "platform/failure.h"

namespace kavo {

TargetBuild::TargetBuild(std::u16string_view tud, FolderRun& run)
    : tud_(tud), open_tag_(open_tag_name_of(tud)), run_(run) {}

TargetBuild::~TargetBuild() {
  if (!skeleton_.path.empty() && !skeleton_.keep) clsCommon().DeleteFile(skeleton_.path);
}

// Runs a step. When it fails, keeps the reason and returns false.
template <class Step>
bool TargetBuild::can(Step&& step) {
  try {
    step();
    return true;
  } catch (const failure& reason) {
    refusal_ = reason.description();
    return false;
  }
}

bool TargetBuild::open() { return leaves_alone(tud_) && document_.open(tud_); }

bool TargetBuild::read_details() {
  auto details = document_.merge_details();
  if (details) details_ = std::move(*details);
  return details && leaves_alone(details_.skeleton_name);
}

bool TargetBuild::save_open_tag(const std::optional<StatusColours>& colours) {
  return can([&] { run_.borrow(open_tag_); }) && document_.save_open_tag(open_tag_, colours);
}

bool TargetBuild::locate_skeleton() {
  auto skeleton = document_.locate_skeleton();
  if (skeleton) skeleton_ = std::move(*skeleton);
  if (skeleton_.path.empty()) return false;
  return skeleton_.keep || can([&] { run_.note_temporary_file(skeleton_.path); });
}

// Compares names without their folders, since a document may name its skeleton with or without one.
bool TargetBuild::leaves_alone(std::u16string_view file) {
  const auto name_of = [](std::u16string_view path) { return file_name_of(path); };
  if (!equal_ignoring_case(name_of(file), name_of(open_tag_))) return true;
  refusal_ = u"The OpenTag file " + std::exchange(open_tag_, u"") + u" would replace a file that it is made from";
  return false;
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
