// The facts that tell the three side files apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mif/clsMIFUtilities.h"
#include "mif/mif_messages.h"

namespace kavo {

struct clsMIFUtilities::SideFile {
  std::u16string clsMIFUtilities::*path;
  EntryTable clsMIFUtilities::*table;
  int (clsMIFUtilities::*add)(std::string_view name, std::string_view text);
  bool is_index;  // tells how its texts were split; the others carry name and untranslated text in the tag
  TextRow cannot_write, no_name, cannot_read;
  std::optional<MifCoding> clsMIFUtilities::*coding;
  std::optional<ValueConversion> clsMIFUtilities::*values;
  const char16_t* entry;  // what one is called in a message

  static const SideFile kIndex, kXrefs, kVariables;
};

}  // namespace kavo
