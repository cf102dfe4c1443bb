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
  std::u16string path;
  bool keep = true;  // false for a scratch file, which the run deletes
};

// Every call throws what the component raises, and `refusal` when an operation returns another status than 0.
class TudComponent {
 public:
  TudComponent();

  void open(std::u16string_view name);
  MergeDetails merge_details();
  // Writes the OpenTag file, coloured when colours are given.
  void save_open_tag(std::u16string_view name, const std::optional<StatusColours>& colours);
  // Also throws `refusal` when there is no skeleton.
  LocatedSkeleton locate_skeleton();

  std::int32_t segment_count();
  struct SegmentTexts {
    std::u16string source;
    std::u16string target;
  };
  SegmentTexts segment(std::int32_t number);  // from 1
  void set_segment(std::int32_t number, std::u16string_view target, std::int32_t status, std::int32_t match);
  void close();

  // The mark of the document's preparation. "" when it has none or the component keeps none.
  std::u16string set_mark();
  // Whether the author's document is known to have changed since it was prepared.
  bool has_source_changed();

 private:
  void call(std::u16string_view member, std::span<Argument> arguments);
  // Throws `refusal` with the component's own words, or with the name of the operation when the component gives no
  // reason.
  [[noreturn]] void refuse(std::u16string_view member) const;

  ObjectRef document_;
};

}  // namespace kavo
