// The facts of a bilingual document for which XLIFF 1.2 has no attribute. Each is a note "NAME=VALUE" from our tool in
// the header. A new one is one more row.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "suite/document/tud_format.h"

namespace kavo {

struct HeaderField {
  std::string_view name;
  bool is_name;                                             // a file name, or a part of one
  std::string (*text)(const TudHeader& header);             // as the note says it; "" for a fact that is left out
  void (*take)(TudHeader& header, std::string_view value);  // the reverse; a name is decoded and checked before
};

std::span<const HeaderField> header_fields();

}  // namespace kavo
