// K19Suite.TUDDocument: a bilingual document for hosts.
#pragma once

#include <memory>
#include <string>

#include "platform/automation.h"
#include "suite/document/bilingual_document.h"

namespace kavo {

// Members: Open, GetMergeDetails, SaveOpenTag, SaveColouredOpenTag, LocateSkeleton, SegmentCount, GetSegment,
// SetSegment, Close and LastError; docs/suite-interface.md describes them. An operation returns 0 on success, else 1
// with the reason in LastError.
class TUDDocument final : public TableObject {
 public:
  TUDDocument();

 private:
  template <class Step>
  Value status_of_step(Step&& step);
  BilingualDocument& document() const;  // throws `failure` 91 when none is open

  Value open(std::span<Argument> arguments);
  Value merge_details(std::span<Argument> arguments);
  Value save_open_tag(std::span<Argument> arguments);
  Value save_coloured_open_tag(std::span<Argument> arguments);
  Value locate_skeleton(std::span<Argument> arguments);
  Value segment(std::span<Argument> arguments);
  Value change_segment(std::span<Argument> arguments);
  Value close();

  std::unique_ptr<BilingualDocument> document_;
  std::u16string last_error_;
};

}  // namespace kavo
