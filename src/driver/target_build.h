// The way of one bilingual document to its target: the document component writes an OpenTag file and finds the
// skeleton, the filter catalogue makes the target of both. Side files of a document take the same way.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/tud_component.h"

namespace kavo {

class FolderRun;

class TargetBuild {
 public:
  // Throws what the creation of the suite's component raises, as every step throws what the component raises. What the
  // build makes on its way (the OpenTag file, a skeleton that is not to be kept) goes with the run, which must outlive
  // it.
  TargetBuild(std::u16string_view tud, FolderRun& run);
  ~TargetBuild();
  TargetBuild(const TargetBuild&) = delete;
  TargetBuild& operator=(const TargetBuild&) = delete;

  // The steps, in this order; false when one failed, reason() then tells why.
  bool open();
  bool read_details();
  bool save_open_tag(const std::optional<StatusColours>& colours);
  bool locate_skeleton();
  std::u16string reason() const { return refusal_.empty() ? document_.reason() : refusal_; }

  // Throws `failure` 5 for a target that is one of the files that it is made of, as far as the steps have told them.
  void refuse_own_file(const std::u16string& target) const;
  // The last step. `language` is the target language, "" for the document's own. Throws what the catalogue raises, and
  // `failure` 53 when it made no file.
  void create_target(const std::u16string& target, const std::u16string& language) const;

  // Both ask the document that open() has opened.
  std::u16string set_mark() { return document_.set_mark(); }
  bool has_source_changed() { return document_.has_source_changed(); }
  const MergeDetails& details() const { return details_; }

 private:
  // False when `file`, which the build reads, has the name of the OpenTag file, which the build writes and deletes. It
  // then does neither.
  bool leaves_alone(std::u16string_view file);
  template <class Step>
  bool can(Step&& step);

  std::u16string tud_;
  std::u16string open_tag_;
  std::u16string refusal_;
  FolderRun& run_;
  TudComponent document_;
  MergeDetails details_;
  LocatedSkeleton skeleton_;
};

}  // namespace kavo
