// What rebuilding must know about a segment of a script file. It is kept in the skeleton as the segment's context.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/script/literal_value.h"
#include "suite/filters/script/script_units.h"

namespace kavo::script {

struct SegmentPlace {
  // What must be known about a code. The codes are in the order of the hole's codes.
  struct Code {
    LiteralForm before = LiteralForm::kDouble;
    LiteralForm after = LiteralForm::kDouble;
    bool is_ordered = false;
  };

  Language language = Language::kUnknown;
  bool in_element = false;
  bool has_markup = false;
  bool is_attribute = false;
  bool is_constant = false;
  bool in_page = false;
  char quote = 0;  // of the attribute
  LiteralForm first = LiteralForm::kDouble;
  LiteralForm last = LiteralForm::kDouble;
  std::vector<Code> codes;

  Quoting quoting(LiteralForm form) const { return {language, form, in_element, is_constant}; }
};

SegmentPlace place_of_unit(const Unit& unit);
std::string context_of(const SegmentPlace& place);
// Throws `failure` 5 for a context that is damaged.
SegmentPlace place_from(std::string_view context);

}  // namespace kavo::script
