// Builds the target of one bilingual document. The document component writes an OpenTag file and finds the skeleton,
// and the filter catalogue makes the target from both. The documents of side files are built in the same way.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/tud_component.h"

namespace kavo {

class FolderRun;

class TargetBuild {
 public:
  // Throws what the creation of the suite's component raises; every step throws what the component raises. The run,
  // which must outlive the build, removes the build's intermediate files: the OpenTag file, and a skeleton that is not
  // to be kept.
  TargetBuild(std::u16string_view tud, FolderRun& run);
  ~TargetBuild();
  TargetBuild(const TargetBuild&) = delete;
  TargetBuild& operator=(const TargetBuild&) = delete;

  // The steps, in this order. Each throws `refusal` (step_failures.h) when it cannot be taken.
  void open();
  void read_details();
  void save_open_tag(const std::optional<StatusColours>& colours);
  void locate_skeleton();

  // Throws `failure` 5 when `target` is one of the files from which it is made, as far as the steps so far know them.
  void refuse_own_file(const std::u16string& target) const;
  // The last step. `language` is the target language, "" for the document's own. Throws what the catalogue raises, and
  // `failure` 53 when the catalogue made no file.
  void create_target(const std::u16string& target, const std::u16string& language) const;

  // Both ask the document opened by open().
  std::u16string set_mark() { return document_.set_mark(); }
  bool has_source_changed() { return document_.has_source_changed(); }
  const MergeDetails& details() const { return details_; }

 private:
  // Throws `refusal` when `file`, which the build reads, has the name of the OpenTag file, which the build would write
  // and delete.
  void refuse_open_tag_name(std::u16string_view file) const;

  std::u16string tud_;
  std::u16string open_tag_;
  FolderRun& run_;
  TudComponent document_;
  MergeDetails details_;
  LocatedSkeleton skeleton_;
};

}  // namespace kavo
