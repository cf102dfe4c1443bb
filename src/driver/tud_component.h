// The suite's bilingual document ("K19Suite.TUDDocument"), reached late-bound as docs/suite-interface.md describes it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "driver/status_colours.h"
#include "platform/automation.h"

namespace kavo {

struct MergeDetails {
  std::u16string source_format;  // extension of the source document
  std::u16string target_name;    // full path
  std::u16string skeleton_name;
  std::u16string filter_identifier;
};

struct LocatedSkeleton {
  std::u16string path;  // "" when there is none
  bool keep = true;     // false for a scratch file, which the run deletes
};

// Every call throws what the component raises. An operation that returns another status than 0 has failed.
class TudComponent {
 public:
  TudComponent();

  bool open(std::u16string_view name);
  std::optional<MergeDetails> merge_details();
  // Writes the OpenTag file, coloured when colours are given.
  bool save_open_tag(std::u16string_view name, const std::optional<StatusColours>& colours);
  std::optional<LocatedSkeleton> locate_skeleton();

  std::int32_t segment_count();
  struct SegmentTexts {
    std::u16string source;
    std::u16string target;
  };
  std::optional<SegmentTexts> segment(std::int32_t number);  // from 1
  bool set_segment(std::int32_t number, std::u16string_view target, std::int32_t status, std::int32_t match);
  bool close();

  // The mark of the document's preparation. "" when it has none or the component keeps none.
  std::u16string set_mark();
  // Whether the author's document is known to have changed since it was prepared.
  bool has_source_changed();

  // Why the last operation failed, for people. The name of the operation when the component does not say.
  std::u16string reason() const;

 private:
  bool call(std::u16string_view member, std::span<Argument> arguments);

  ObjectRef document_;
  std::u16string_view last_member_;
};

}  // namespace kavo
