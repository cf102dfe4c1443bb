// How the three side files differ.
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
  bool is_index;  // its first statement says how texts were split; tags of the others hold name and text
  TextRow cannot_write, no_name, cannot_read;
  std::optional<MifCoding> clsMIFUtilities::*coding;
  std::optional<ValueConversion> clsMIFUtilities::*values;
  const char16_t* entry;  // what messages call one of its entries

  static const SideFile kIndex, kXrefs, kVariables;
};

}  // namespace kavo
